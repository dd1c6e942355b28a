#include "shell/CommandNames.h"

#include "shell/SettingsTable.h"

namespace rm {

const std::map<std::string, PagingDirection>& Directions() {
  // The direction names are the project file's switches of the paging scheme.
  static const std::map<std::string, PagingDirection> m = [] {
    std::map<std::string, PagingDirection> names;
    for (const auto& [key, value] : rm::PagingRadioGroup().choices)
      names.emplace(key, static_cast<PagingDirection>(value));
    return names;
  }();
  return m;
}

const std::vector<std::string>& DirectionNames() {
  // In the order --help lists them: each across direction, then each vertical one.
  static const std::vector<std::string> names = [] {
    std::vector<std::string> v;
    for (PagingDirection d :
         {PagingDirection::ToRightAll, PagingDirection::ToLeftAll, PagingDirection::ToRight, PagingDirection::ToLeft,
          PagingDirection::Down, PagingDirection::Up, PagingDirection::DownAll, PagingDirection::UpAll})
      v.push_back(NameOf(d));
    return v;
  }();
  return names;
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
