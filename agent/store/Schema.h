#pragma once

#include <string_view>

namespace korvale::agent {

/// The tables of the store's file. Names and columns are stored: a change is a new version, with
/// statements that also bring an older file up to it.
inline constexpr int kStoreVersion = 1;
inline constexpr std::string_view kStoreSchema = R"(
CREATE TABLE IF NOT EXISTS finding(
  number INTEGER PRIMARY KEY AUTOINCREMENT, id TEXT NOT NULL, path BLOB NOT NULL,
  name TEXT NOT NULL, kind INTEGER NOT NULL, state INTEGER NOT NULL,
  first_seen INTEGER NOT NULL, last_seen INTEGER NOT NULL,
  owner INTEGER NOT NULL, size INTEGER NOT NULL, UNIQUE(id, path));
CREATE TABLE IF NOT EXISTS waive(
  id TEXT PRIMARY KEY, since INTEGER NOT NULL, by INTEGER NOT NULL, reason TEXT NOT NULL)
  WITHOUT ROWID;
CREATE TABLE IF NOT EXISTS quarantine(
  number INTEGER PRIMARY KEY AUTOINCREMENT, id TEXT NOT NULL UNIQUE, finding INTEGER NOT NULL,
  path BLOB NOT NULL, sha256 TEXT NOT NULL, file_system INTEGER NOT NULL,
  inode INTEGER NOT NULL, size INTEGER NOT NULL, ctime INTEGER NOT NULL, mtime INTEGER NOT NULL,
  mode INTEGER NOT NULL, owner INTEGER NOT NULL, grp INTEGER NOT NULL,
  accessed INTEGER NOT NULL, modified INTEGER NOT NULL, flags INTEGER NOT NULL,
  attributes BLOB NOT NULL, other_names INTEGER NOT NULL, since INTEGER NOT NULL,
  state INTEGER NOT NULL);
)";

/// Of the verdict cache. An unsigned 64-bit number is stored as the signed one of the same bits.
inline constexpr int kVerdictVersion = 1;
inline constexpr std::string_view kVerdictSchema = R"(
CREATE TABLE IF NOT EXISTS signature(number INTEGER PRIMARY KEY, key TEXT NOT NULL UNIQUE);
CREATE TABLE IF NOT EXISTS verdict(
  file_system INTEGER NOT NULL, inode INTEGER NOT NULL, ctime INTEGER NOT NULL,
  size INTEGER NOT NULL, signature INTEGER NOT NULL, verdict INTEGER NOT NULL,
  PRIMARY KEY(file_system, inode)) WITHOUT ROWID;
)";

} // namespace korvale::agent
