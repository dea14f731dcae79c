// The built type library: what an object browser, a compiler and a script engine find in it.

#include <windows.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "support/Component.h"
#include "support/Printable.h"
#include "support/TypeLibrary.h"

namespace zeq::test {
namespace {

using testing::IsEmpty;

constexpr WORD applicationObject = TYPEFLAG_FAPPOBJECT | TYPEFLAG_FPREDECLID;

using Surface = std::map<std::string, std::set<std::string>>;

/// The types of public_surface.txt, which stands beside the test program, with their members.
Surface expectedSurface() {
  std::array<char, MAX_PATH> path{};
  GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size()));
  const std::string program(path.data());
  std::ifstream file(program.substr(0, program.find_last_of('\\')) + "\\public_surface.txt");
  Surface surface;
  std::set<std::string>* members = nullptr;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("  ")) {
      const bool isNew = members->insert(line.substr(2)).second;
      EXPECT_TRUE(isNew) << line;
    } else if (!line.empty() && !line.starts_with('#')) {
      members = &surface[line];
    }
  }
  return surface;
}

Surface builtSurface() {
  Surface surface;
  for (const LibraryType& type : libraryTypes(TKIND_ENUM)) {
    auto& members = surface["enum " + printable(type.name)];
    for (const std::wstring& member : enumeratorsOf(type)) {
      members.insert(printable(member));
    }
  }
  for (const LibraryType& type : libraryTypes(TKIND_COCLASS)) {
    const bool isGlobal = (type.flags & TYPEFLAG_FAPPOBJECT) != 0;
    auto& members = surface[(isGlobal ? "global class " : "class ") + printable(type.name)];
    for (const Implemented& implemented : implementedBy(type)) {
      if ((implemented.flags & IMPLTYPEFLAG_FDEFAULT) == 0) {
        continue;
      }
      const bool isSource = (implemented.flags & IMPLTYPEFLAG_FSOURCE) != 0;
      for (const LibraryMember& member : membersOf(implemented.type)) {
        const std::string text = printable(member.text);
        members.insert(isSource ? "event" + text.substr(text.find(' ')) : text);
      }
    }
  }
  for (const LibraryType& type : libraryTypes(TKIND_DISPATCH)) {
    if (!type.name.starts_with(L'_')) {
      auto& members = surface["interface " + printable(type.name)];
      for (const LibraryMember& member : membersOf(type)) {
        members.insert(printable(member.text));
      }
    }
  }
  return surface;
}

std::vector<std::string> without(const std::set<std::string>& all, const std::set<std::string>& removed) {
  std::vector<std::string> rest;
  std::set_difference(all.begin(), all.end(), removed.begin(), removed.end(), std::back_inserter(rest));
  return rest;
}

TEST(TypeLibraryTest, HasThePublicSurface) {
  const Surface expected = expectedSurface();
  Surface built = builtSurface();
  for (const auto& [type, members] : expected) {
    const auto found = built.find(type);
    if (found == built.end()) {
      ADD_FAILURE() << "not in the library: " << type;
      continue;
    }
    EXPECT_THAT(without(members, found->second), IsEmpty()) << "missing in " << type;
    EXPECT_THAT(without(found->second, members), IsEmpty()) << "not expected in " << type;
    built.erase(found);
  }
  for (const auto& [type, members] : built) {
    ADD_FAILURE() << "not in the listing: " << type;
  }
}

TEST(TypeLibraryTest, IsNamedAndDescribed) {
  Bstr name;
  Bstr help;
  ASSERT_EQ(builtTypeLibrary()->GetDocumentation(-1, name.out(), help.out(), nullptr, nullptr), S_OK);
  EXPECT_EQ(name.view(), L"ZEQUtility2");
  EXPECT_EQ(help.view(), L"ZEQ General Purpose Utility Classes");
}

TEST(TypeLibraryTest, DescribesEveryTypeAndMember) {
  std::vector<std::string> silent;
  for (const TYPEKIND kind : {TKIND_COCLASS, TKIND_DISPATCH, TKIND_INTERFACE, TKIND_ENUM}) {
    for (const LibraryType& type : libraryTypes(kind)) {
      if (type.help.empty()) {
        silent.push_back(printable(type.name));
      }
      for (const LibraryMember& member :
           kind == TKIND_DISPATCH ? membersOf(type) : std::vector<LibraryMember>()) {
        if (member.help.empty()) {
          silent.push_back(printable(type.name + L"." + member.name));
        }
      }
    }
  }
  EXPECT_THAT(silent, IsEmpty());
}

TEST(TypeLibraryTest, PredeclaresTheGlobalClassesOnly) {
  const std::set<std::wstring> global{L"CZEQUtilityStrings", L"CZEQUtilityNumerical",
                                      L"CZEQUtilityCollections", L"CZEQUtilitySorting",
                                      L"CZEQFileSystemObject"};
  for (const LibraryType& type : libraryTypes(TKIND_COCLASS)) {
    const WORD wanted = TYPEFLAG_FCANCREATE | (global.contains(type.name) ? applicationObject : 0);
    EXPECT_EQ(type.flags & (TYPEFLAG_FCANCREATE | applicationObject), wanted) << printable(type.name);
  }
}

TEST(TypeLibraryTest, GivesEveryClassItsHiddenDualInterface) {
  for (const LibraryType& type : libraryTypes(TKIND_COCLASS)) {
    const auto implemented = implementedBy(type);
    const auto own = std::find_if(implemented.begin(), implemented.end(),
                                  [](const auto& each) { return each.flags == IMPLTYPEFLAG_FDEFAULT; });
    ASSERT_NE(own, implemented.end()) << printable(type.name);
    EXPECT_EQ(printable(own->type.name), "_" + printable(type.name));
    constexpr WORD wanted = TYPEFLAG_FHIDDEN | TYPEFLAG_FDUAL;
    EXPECT_EQ(own->type.flags & wanted, wanted) << printable(type.name);
  }
}

TEST(TypeLibraryTest, GivesEveryEventInterfaceToItsClass) {
  std::set<std::wstring> sources;
  for (const LibraryType& type : libraryTypes(TKIND_COCLASS)) {
    for (const Implemented& implemented : implementedBy(type)) {
      if ((implemented.flags & IMPLTYPEFLAG_FSOURCE) != 0) {
        EXPECT_EQ(printable(implemented.type.name), "__" + printable(type.name));
        EXPECT_EQ(implemented.flags, IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE);
        EXPECT_EQ(implemented.type.flags & (TYPEFLAG_FHIDDEN | TYPEFLAG_FDUAL), TYPEFLAG_FHIDDEN);
        sources.insert(implemented.type.name);
      }
    }
  }
  for (const LibraryType& type : libraryTypes(TKIND_DISPATCH)) {
    EXPECT_EQ(sources.contains(type.name), type.name.starts_with(L"__")) << printable(type.name);
  }
}

}  // namespace
}  // namespace zeq::test
