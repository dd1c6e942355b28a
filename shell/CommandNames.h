#pragma once
#include <map>
#include <string>
#include <vector>

#include "engine/ConversionSession.h"

namespace rm {

// The words the command line uses for the Paging Scheme and the origin corner, both ways.
const std::map<std::string, PagingDirection>& Directions();
// The direction names in the order the help lists them.
const std::vector<std::string>& DirectionNames();
const std::map<std::string, OriginCorner>& Origins();
std::string NameOf(PagingDirection d);
std::string NameOf(OriginCorner o);

}  // namespace rm
