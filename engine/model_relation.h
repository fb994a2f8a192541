// The model relation of a relation code: the value of MODELS.RELATION under which its models are
// kept. Several codes share one, so that a model serves all members of a group.
//
// The operations that need it map the codes differently on purpose; each has its own table here.
#pragma once

#include <string>
#include <string_view>

namespace kestrova {

// For looking a model up by its name. A code without a row is trimmed and upper-cased.
std::string model_relation_for_lookup(std::string_view code);

// For listing models. It also groups the invoice headers and lends three list codes the models of
// others; a code without a row stays as it is.
std::string model_relation_for_list(std::string_view code);

// For the editor's model list, by the code under which the editor works; a code without a row stays
// as it is.
std::string model_relation_for_editor(std::string_view code);

}  // namespace kestrova
