#pragma once
#include <map>
#include <string>
#include <vector>

#include "engine/ConversionSession.h"

namespace rmcli {

// The words the command line uses for the Paging Scheme and the origin corner, both ways.
const std::map<std::string, rm::PagingDirection>& Directions();
// The direction names in the order the help lists them.
const std::vector<std::string>& DirectionNames();
const std::map<std::string, rm::OriginCorner>& Origins();
std::string NameOf(rm::PagingDirection d);
std::string NameOf(rm::OriginCorner o);

}  // namespace rmcli
