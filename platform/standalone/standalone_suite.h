// The suite's services for use without the suite.
#pragma once

#include <memory>

#include "platform/database.h"
#include "platform/suite.h"
#include "platform/user_locale.h"

namespace kestrova {

// A suite over the tables of catalogue.sql and over STRINGS and OPTIONEN, read through the given
// connection. Each table is read when it is first needed and then kept as long as the suite; what
// could not be read is tried again by the next call. Only SUITE_MODEL_SETTINGS is read each time,
// because users change it.
//
// The services keep what they need alive and may outlive the suite. Raises ObjectNotSet when one of
// the arguments is missing; the services raise what the ports say, and DatabaseError when a table
// cannot be read.
std::shared_ptr<Suite> make_standalone_suite(std::shared_ptr<Connection> connection,
                                             std::shared_ptr<UserLocale> locale);

}  // namespace kestrova
