// Comm_Sel: answers about the fields of the selection catalogue, and the way from a stored filter
// to SQL.
//
// A filter is stored as a criteria string: records, each ended by ";", that are either the OR line
// (the text strOderLine of the caller context) or a criterion "12 >= 10": the field's identifier
// (ID_SELEKTION), an operator and a value, one blank between them.
//
// The object holds no state. Field types are column type codes of the database provider
// (platform/database.h). Nothing is caught: errors of the database and of the suite's services
// reach the caller as kestrova::Error, after every row set that the operation had opened is closed.
// A wrong fixed argument (TabType, Ord_Condition, strParam) shows a message that begins with
// "Debug: " and returns "".
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/combo_port.h"
#include "platform/kes_var.h"
#include "platform/value.h"

namespace kestrova {

class Comm_Sel {
 public:
  // --- One part of a criterion ---------------------------------------------------------------

  // The field, operator or value part of the record sRecord (without ";"). strParam, in any case
  // and with blanks around it, is "GETFIELD", "GETOPERATOR" or "GETVALUE". fromDatabase: the field
  // part is an identifier (a criteria string) rather than a display name (a line of the editor's
  // list). KonverToUserFormat matters for date lists of IN read from the database only: True turns
  // their dates into literals of the fixed form.
  //
  // The list of IN belongs to the operator; its value is empty. A record without operator has an
  // empty field and operator, and is all value. Parts that are not "GETFIELD" look the field's type
  // up. Raises InvalidArgument for a record that begins with "=" or with a lone ">".
  std::string TransComp_NoLabels(const KesVar& KesVar, std::string_view Parameter,
                                 std::string_view sRecord, std::string_view strParam,
                                 bool fromDatabase, bool KonverToUserFormat) const;

  // --- Fields by name, in a row set over SELEKTION that the caller holds -----------------------

  // Each moves to the first row whose NICKNAME_OF_FIELD (Nick True) or NAME_OF_FIELD (False) is
  // val and leaves the row set there, or at its end. "" for a field that is not found, and for an
  // empty val, which leaves the row set alone (it may be null then). Raise BadCriterion for a name
  // with an apostrophe and ObjectNotSet for an absent row set.

  // SQLSELECT, FORMAT and SQLVALUE, upper-cased and trimmed, "" for NULL.
  std::string Get_SQLSelect(std::string_view val, bool Nick, Recordset* tmpSelektion) const;
  std::string Get_Format_Sel(std::string_view val, bool Nick, Recordset* tmpSelektion) const;
  std::string Get_SQLValue(std::string_view val, bool Nick, Recordset* tmpSelektion) const;

  // The table of the kind TabType ("MAIN", "SECOND" or "THIRD", any case, blanks around it) and the
  // join condition Ord_Condition (exactly "I" or "II"), as stored. Raise InvalidUseOfNull for NULL.
  std::string Get_TableName(std::string_view val, bool Nick, std::string_view TabType,
                            Recordset* tmpSelektion) const;
  std::string Get_Condition(std::string_view val, bool Nick, std::string_view Ord_Condition,
                            Recordset* tmpSelektion) const;

  // The SQL expression of the field with the nickname val: SQLVALUE as stored, or, when it is NULL,
  // trimmed TABLE_NAME + "." + trimmed NAME_OF_FIELD.
  std::string Get_FieldName_Sel(std::string_view val, Recordset* tmpSelektion) const;

  // --- Fields by identifier, with a query of their own on dbado_dll ----------------------------

  // As above, with "" for NULL (but a field without SQLVALUE, TABLE_NAME or NAME_OF_FIELD raises
  // InvalidUseOfNull). An identifier without row raises NoCurrentRecord, an absent connection
  // ObjectNotSet.
  std::string Get_SQLSelectFromID(std::int16_t id_selektion,
                                  const std::shared_ptr<Connection>& dbado_dll) const;
  std::string Get_TableNameFromID(std::int16_t id_selektion, std::string_view TabType,
                                  const std::shared_ptr<Connection>& dbado_dll) const;
  // A result of "" or "NA" is shown to the user as a message with the bare identifier.
  std::string Get_FieldNameFromID(std::int16_t id_selektion,
                                  const std::shared_ptr<Connection>& dbado_dll) const;
  // An Ord_Condition other than "I" and "II" answers "" without a message here.
  std::string Get_ConditionFromID(std::int16_t id_selektion, std::string_view Ord_Condition,
                                  const std::shared_ptr<Connection>& dbado_dll) const;
  std::string Get_SQLValueFromID(std::int16_t id_selektion,
                                 const std::shared_ptr<Connection>& dbado_dll) const;

  // The identifier of the first entry of the editor's field list whose text is strFieldString, case
  // and surrounding blanks aside; 0 when there is none. Needs the editor.
  std::int16_t get_FieldID(std::string_view strFieldString) const;

  // --- Types of fields ---------------------------------------------------------------------------

  // The type code of a field for the relation Parameter: from its display format for a catalogue
  // relation, else from an empty result of its expression on the connection of the context.
  std::int16_t Get_TypeOfFieldFromID(const KesVar& KesVar, std::int16_t id_selektion,
                                     std::string_view Parameter) const;

  // The type code by display format: 202 text, 7 date, 5 number with decimals, 3 whole number, 0
  // for any other format.
  std::int16_t Get_TypeOfFieldNew(const KesVar& KesVar, std::string_view Parameter,
                                  std::int16_t id_selektion) const;

  // The same as Get_TypeOfFieldFromID for the entry selected in the editor's field list; val and
  // Nick play no role. Looks the field up in tmpSelektion where the other asks the database.
  std::int16_t Get_TypeOfField(const KesVar& KesVar, std::string_view val, bool Nick,
                               Recordset* tmpSelektion, std::string_view Parameter) const;

  // --- From a stored filter to SQL
  // -----------------------------------------------------------------

  // The FROM/WHERE text of the criteria string strChar for the relation Parameter:
  // " FROM " + tables + " " + base and join conditions + " " + "(" + criteria + ")". Criteria of a
  // group are joined by AND, groups by OR; all criteria stand inside the one pair of parentheses.
  // An empty strChar gives the base FROM/WHERE alone.
  //
  // strParameter is the mode of relations outside the catalogue: "WAREN" or "4ARB" (which may carry
  // a personnel number behind the first four characters of Parameter); with any other mode the
  // result is "" for them. StrVer_Type is the variant tag, ID_Access_Levels goes to the
  // access-level filter.
  //
  // For relations that begin with "LEISTUNGS_BB", and for "VERLOHN", it also fills the temporary
  // table "#BB_LEISTUNGS_KOPF" with the records of the relation.
  //
  // Raises InvalidArgument, naming the record, for a criterion whose text is not closed in itself
  // (quotes, brackets, parentheses, comments, ";", control characters) and for an IN list that
  // would be cut; also for a record that begins with "=" or with a lone ">", and for a personnel
  // number that is none. Raises TypeMismatch for a field part that is no whole number and Overflow
  // for one beyond 16 bits, NoCurrentRecord for a field that SELEKTION does not hold,
  // InvalidUseOfNull for one whose row names no table or column, and ObjectNotSet when a connection
  // is needed and absent; a field that the suite does not offer raises the suite's error.
  std::string D_SelectionFromStr(const KesVar& KesVar, std::string_view Parameter,
                                 std::string_view strParameter, std::string_view strChar,
                                 std::string_view StrVer_Type, std::int32_t ID_Access_Levels) const;

  // The FROM/WHERE text of a saved model: its criteria string is looked up in MODELS by name and
  // model relation and translated as above, with the model relation as mode. A name that is not
  // found, or empty, gives the base FROM/WHERE. A name with an apostrophe or a control character
  // raises InvalidArgument before anything is asked.
  std::string D_Selection(const KesVar& KesVar, std::string_view Parameter,
                          std::string_view strModule_Name, std::string_view StrVer_Type_dll,
                          const std::int32_t& ID_Access_Levels) const;

  // A criteria string as text for people, one criterion per line (CR LF between lines): the field's
  // ID_STRING, operator and value; " ODER " for an OR line. Dates come in the fixed form
  // 'dd.mm.yyyy'. Text behind the last ";" is left out. Raises NoCurrentRecord for a field that
  // SELEKTION does not hold.
  std::string ConditionSelStr(const KesVar& KesVar, std::string_view Parameter,
                              std::string_view strSubset) const;

  // Turns strFromWhere, the text behind the column list of a SELECT, into the temporary table of
  // the kind Parameter on the connection of the context; an earlier table of that kind is replaced.
  // An unknown kind does nothing. Returns the batch for "LEISTUNGS_BB" when the context has no
  // connection (it is then for the caller to run), and "" in every other case. A failing batch
  // raises; that an earlier table could not be dropped does not.
  std::string CreateTemporyTable(const KesVar& KesVar, std::string_view Parameter,
                                 std::string_view strFromWhere) const;

  // --- Values and pick lists
  // ------------------------------------------------------------------------

  // A stored value of the field val as the host shows it. Two fields hold flags for units:
  // "RINDEPROZENT" gives "'cm'" or "'%'", "DM/EURO" the national currency or "EURO" (True or False;
  // NULL is False). Any other value comes as text by the user's locale. Nick True also moves the
  // row set to the field with the nickname val. "" for an empty val. Raises TypeMismatch for a unit
  // value that is no boolean, InvalidUseOfNull for NULL in any other field.
  std::string Get_Value_Sel(std::string_view val, bool Nick, const Value& value,
                            Recordset* tmpSelektion, std::string_view strNatWahrung_dll) const;

  // The value val, which the user picked for the field with the nickname cboValue_dll, as SQL:
  // texts and dates between apostrophes (inner ones are not doubled), numbers as they stand. "" for
  // a nickname that dbSelektion_dll does not hold. For a catalogue or restricted relation the type
  // is that of the field selected in the editor; the entry "Null" at the top of its value list
  // stays unquoted.
  std::string ApcboValue(const KesVar& KesVar, std::string_view val, std::string_view cboValue_dll,
                         Recordset* dbSelektion_dll, std::string_view Parameter) const;

  // Fills a list with the models of a relation that the user may see, by name, with MODELS.ID as
  // item data, behind one empty entry with 0. SetStandardModel also selects the user's standard
  // model: the empty entry when there is none, and nothing when it is not among the entries.
  void Fill_ComboModel(const KesVar& KesVar, ComboPort& tmpCombo, std::string_view strParameter,
                       bool SetStandardModel) const;
};

}  // namespace kestrova
