#include "engine/value_queries.h"

#include <algorithm>
#include <array>

#include "platform/text.h"

namespace kestrova {
namespace {

struct ValueQuery {
  std::string_view nickname;
  std::string_view sql;
};

// clang-format off
constexpr std::array kValueQueries = {
    ValueQuery{"HA", "SELECT HA FROM HOLZART WHERE ISNULL(DISABLE,0) = 0 ORDER BY HA"},
    ValueQuery{"HS", "SELECT HS FROM HOLZSORTE ORDER BY HS"},
    ValueQuery{"GKL", "SELECT GKL FROM GUETEKLASSE ORDER BY GKL"},
    ValueQuery{"STKL", "SELECT STKL FROM STKL ORDER BY STKL"},
    ValueQuery{"NA", "SELECT NA FROM NUTZUNGSART ORDER BY NA"},
    ValueQuery{"KA", "SELECT KA FROM KALAMITAET ORDER BY KA"},
    ValueQuery{"LAUB/NADEL", "SELECT DISTINCT LNH FROM HOLZART ORDER BY LNH"},
    ValueQuery{"RELTABLE 1", "SELECT KURZNAME FROM RELTABLE WHERE RELTABLE_ID = 1 ORDER BY KURZNAME"},
    ValueQuery{"RELTABLE 2", "SELECT KURZNAME FROM RELTABLE WHERE RELTABLE_ID = 2 ORDER BY KURZNAME"},
    ValueQuery{"RELTABLE 3", "SELECT KURZNAME FROM RELTABLE WHERE RELTABLE_ID = 3 ORDER BY KURZNAME"},
    ValueQuery{"RELTABLE 4", "SELECT KURZNAME FROM RELTABLE WHERE RELTABLE_ID = 4 ORDER BY KURZNAME"},
    ValueQuery{"RELTABLE 5", "SELECT KURZNAME FROM RELTABLE WHERE RELTABLE_ID = 5 ORDER BY KURZNAME"},
    ValueQuery{"RELTABLE 6", "SELECT KURZNAME FROM RELTABLE WHERE RELTABLE_ID = 6 ORDER BY KURZNAME"},
    ValueQuery{"RELTABLE 7", "SELECT KURZNAME FROM RELTABLE WHERE RELTABLE_ID = 7 ORDER BY KURZNAME"},
    ValueQuery{"RELTABLE 8", "SELECT KURZNAME FROM RELTABLE WHERE RELTABLE_ID = 8 ORDER BY KURZNAME"},
    ValueQuery{"RELTABLE 9", "SELECT KURZNAME FROM RELTABLE WHERE RELTABLE_ID = 9 ORDER BY KURZNAME"},
    ValueQuery{"RELTABLE 10", "SELECT KURZNAME FROM RELTABLE WHERE RELTABLE_ID = 10 ORDER BY KURZNAME"},
    ValueQuery{"SORTIMENT", "SELECT NAME FROM DSART ORDER BY 1"},
};
// clang-format on

}  // namespace

std::string_view fixed_value_query(std::string_view nickname) {
  const std::string name = text::upper(nickname);
  const auto query = std::find_if(kValueQueries.begin(), kValueQueries.end(),
                                  [&name](const ValueQuery& q) { return q.nickname == name; });
  return query == kValueQueries.end() ? std::string_view() : query->sql;
}

}  // namespace kestrova
