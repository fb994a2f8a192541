// Temporary tables of record identifiers, one per materialisation kind.
#include <algorithm>
#include <array>
#include <string>

#include "engine/comm_sel.h"
#include "platform/error.h"
#include "platform/text.h"

namespace kestrova {
namespace {

// A kind of temporary table. head is the batch up to the caller's FROM/WHERE text; kinds without
// one take the columns of the caller's SELECT, and index_rows says whether their rows are indexed.
struct TemporaryKind {
  std::string_view kind;
  std::string_view table;
  std::string_view head{};
  bool index_rows = false;
};

// clang-format off
constexpr std::array kKinds = {
    TemporaryKind{.kind = "PREIS_ANGEBOT", .table = "#PREIS", .head = "CREATE TABLE #PREIS (ID int,ROW int,PREIS float)\r\nCREATE NONCLUSTERED INDEX IDX ON #PREIS (ID) ON [PRIMARY]\r\nINSERT INTO #PREIS (ID) SELECT BB_HAB.ID"},
    TemporaryKind{.kind = "PREIS_RECHNUNG", .table = "#PREIS", .head = "CREATE TABLE #PREIS (ID int,ROW int,PREIS float)\r\nCREATE NONCLUSTERED INDEX IDX ON #PREIS (ID) ON [PRIMARY]\r\nINSERT INTO #PREIS (ID) SELECT BB_HAB.ID"},
    TemporaryKind{.kind = "ID", .table = "#ID", .head = "CREATE TABLE #ID (ID int)\r\nCREATE NONCLUSTERED INDEX IDX ON #ID (ID) ON [PRIMARY]\r\nINSERT INTO #ID (ID) "},
    TemporaryKind{.kind = "HE 120", .table = "#ID", .head = "CREATE TABLE #ID (ID int,ID_ACCESS_LEVELS int,ID_WALDBESITZER int,ERFASSUNGSDATUM smalldatetime,DRUCKSTATUS nvarchar(1))\r\nCREATE NONCLUSTERED INDEX IDX ON #ID (ID) ON [PRIMARY]\r\nINSERT INTO #ID (ID,ID_ACCESS_LEVELS,ID_WALDBESITZER,ERFASSUNGSDATUM,DRUCKSTATUS) "},
    TemporaryKind{.kind = "HE 210", .table = "#ID", .head = "CREATE TABLE #ID (ID int,ID_ACCESS_LEVELS int,ID_WALDBESITZER int,ERFASSUNGSDATUM smalldatetime)\r\nCREATE NONCLUSTERED INDEX IDX ON #ID (ID) ON [PRIMARY]\r\nINSERT INTO #ID (ID,ID_ACCESS_LEVELS,ID_WALDBESITZER,ERFASSUNGSDATUM) "},
    TemporaryKind{.kind = "CHILD", .table = "#CHILD", .index_rows = true},
    TemporaryKind{.kind = "MAIN", .table = "#MAIN", .index_rows = true},
    // The same table as "MAIN", on purpose.
    TemporaryKind{.kind = "UE", .table = "#MAIN"},
    TemporaryKind{.kind = "PLAN_JAHR", .table = "#PLAN_JAHR"},
};

constexpr std::string_view kLabourKind = "LEISTUNGS_BB";
constexpr std::string_view kLabourTable = "#BB_LEISTUNGS_KOPF";
constexpr std::string_view kLabourDrop = "IF NOT (SELECT OBJECT_ID('tempdb..#BB_LEISTUNGS_KOPF')) IS NULL DROP TABLE #BB_LEISTUNGS_KOPF\r\n";
constexpr std::string_view kLabourHead = "CREATE TABLE #BB_LEISTUNGS_KOPF (ID int)\r\nCREATE NONCLUSTERED INDEX IDX ON #BB_LEISTUNGS_KOPF (ID) ON [PRIMARY]\r\nINSERT INTO #BB_LEISTUNGS_KOPF (ID) SELECT BB_LEISTUNGS_KOPF.ID";
constexpr std::string_view kLabourTail = " GROUP BY BB_LEISTUNGS_KOPF.ID";
// A text that joins the table cannot fill it.
constexpr std::string_view kLabourJoin = " INNER JOIN #BB_LEISTUNGS_KOPF ON BB_LEISTUNGS_KOPF.ID = #BB_LEISTUNGS_KOPF.ID";
// clang-format on

std::string labour_batch(std::string_view from_where) {
  return std::string(kLabourHead) + text::replace_all(from_where, kLabourJoin, "") +
         std::string(kLabourTail);
}

// The first statement makes an empty table with the columns of the selection, the second fills it,
// so that the types are the selection's own.
std::string generic_batch(const TemporaryKind& kind, std::string_view from_where) {
  const std::string table(kind.table);
  const std::string rows(from_where);
  std::string batch = "SELECT TOP 0 A.* INTO " + table + " FROM (" + rows + ") A\r\n" +
                      "INSERT INTO " + table + " " + rows;
  if (kind.index_rows) {
    batch += "\r\nCREATE NONCLUSTERED INDEX IDX ON " + table + " (ID) ON [PRIMARY]";
  }
  return batch;
}

std::string batch_of(const TemporaryKind& kind, std::string_view from_where) {
  if (kind.head.empty()) return generic_batch(kind, from_where);
  return std::string(kind.head) + std::string(from_where);
}

void replace_table(const KesVar& context, std::string_view table, std::string_view batch) {
  try {
    connection_of(context).execute("DROP TABLE " + std::string(table));
  } catch (const Error&) {
    // Usually there is no such table yet.
  }
  connection_of(context).execute(batch);
}

}  // namespace

std::string Comm_Sel::CreateTemporyTable(const KesVar& KesVar, std::string_view Parameter,
                                         std::string_view strFromWhere) const {
  if (Parameter == kLabourKind) {
    const std::string batch = labour_batch(strFromWhere);
    if (!KesVar.dbado) return std::string(kLabourDrop) + batch;
    replace_table(KesVar, kLabourTable, batch);
    return {};
  }
  const auto kind = std::find_if(kKinds.begin(), kKinds.end(), [Parameter](const TemporaryKind& k) {
    return k.kind == Parameter;
  });
  if (kind != kKinds.end()) replace_table(KesVar, kind->table, batch_of(*kind, strFromWhere));
  return {};
}

}  // namespace kestrova
