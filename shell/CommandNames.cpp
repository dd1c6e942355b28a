#include "shell/CommandNames.h"

namespace rm {

const std::map<std::string, PagingDirection>& Directions() {
  static const std::map<std::string, PagingDirection> m = {
      {"tr", PagingDirection::ToRightAll}, {"tl", PagingDirection::ToLeftAll}, {"tra", PagingDirection::ToRight},
      {"tla", PagingDirection::ToLeft},    {"td", PagingDirection::Down},      {"tu", PagingDirection::Up},
      {"tda", PagingDirection::DownAll},   {"tua", PagingDirection::UpAll}};
  return m;
}

const std::map<std::string, OriginCorner>& Origins() {
  static const std::map<std::string, OriginCorner> m = {
      {"TL", OriginCorner::TL}, {"TR", OriginCorner::TR}, {"BR", OriginCorner::BR}, {"BL", OriginCorner::BL}};
  return m;
}

namespace {
template <typename T>
std::string Find(const std::map<std::string, T>& names, T value) {
  for (const auto& [name, v] : names)
    if (v == value) return name;
  return "?";
}
}  // namespace

std::string NameOf(PagingDirection d) { return Find(Directions(), d); }
std::string NameOf(OriginCorner o) { return Find(Origins(), o); }

}  // namespace rm
