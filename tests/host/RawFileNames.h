#pragma once
// The names in a directory as raw bytes, sorted, without the dot entries: Qt cannot
// list names that are not UTF-8 as they stand.

#include <QByteArray>

#include <dirent.h>

#include <algorithm>
#include <string>
#include <vector>

inline std::vector<std::string> RawFileNames(const QByteArray& ADir) {
  std::vector<std::string> Names;
  if (DIR* H = ::opendir(ADir.constData())) {
    while (const dirent* E = ::readdir(H))
      if (E->d_name[0] != '.') Names.emplace_back(E->d_name);
    ::closedir(H);
  }
  std::sort(Names.begin(), Names.end());
  return Names;
}
