// The Win32 platform file on its own: the behaviour that no test through the
// exports can reach portably (drive letters, backslashes, the system's
// profile reader, Windows file handles).
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/platform.h"

namespace p = kalvor::platform;

namespace {

// Drive, folder, name and extension of a path.
std::vector<std::string> parts_of(const char* path) {
  p::PathParts parts;
  p::split_path(path, &parts);
  return {parts.drive, parts.folder, parts.name, parts.extension};
}

std::string temp(const char* name) { return ::testing::TempDir() + "kalvor_win32_" + name; }

void write_text(const std::string& path, const std::string& text) {
  p::File f = p::create_write(path.c_str());
  ASSERT_TRUE(f.is_open()) << path;
  ASSERT_TRUE(p::write(f, text.data(), text.size()));
  p::close(f);
}

}  // namespace

TEST(Win32Platform, SplitPathTakesDriveLettersAndBothSeparators) {
  using Parts = std::vector<std::string>;
  EXPECT_EQ(parts_of("C:\\shows\\laser.show.ild"), (Parts{"C:", "\\shows\\", "laser.show", ".ild"}));
  EXPECT_EQ(parts_of("d:name.pal"), (Parts{"d:", "", "name", ".pal"}));
  EXPECT_EQ(parts_of("dir.d/sub\\file"), (Parts{"", "dir.d/sub\\", "file", ""}));
  EXPECT_EQ(parts_of("\\\\server\\share\\x.cat"), (Parts{"", "\\\\server\\share\\", "x", ".cat"}));
  EXPECT_EQ(parts_of(".pic"), (Parts{"", "", "", ".pic"}));
  EXPECT_EQ(parts_of(""), Parts(4, ""));
  EXPECT_EQ(parts_of(nullptr), Parts(4, ""));
  std::string folder = "\\" + std::string(3000, 'f') + "\\";
  EXPECT_EQ(parts_of(("C:" + folder + "n.ild").c_str()),  // the folder cut, never overrun
            (Parts{"C:", folder.substr(0, sizeof(p::PathParts::folder) - 1), "n", ".ild"}));
  EXPECT_STREQ(p::catalogue_folder(), "\\CAT\\");
}

TEST(Win32Platform, FilesReadWriteSkipAndReplace) {
  std::string path = temp("file.bin"), other = temp("other.bin");
  write_text(path, "0123456789");
  p::File f = p::open_read(path.c_str());
  ASSERT_TRUE(f.is_open());
  EXPECT_EQ(p::length(f), 10u);
  EXPECT_TRUE(p::skip(f, 4));
  char buffer[16] = {};
  EXPECT_EQ(p::read(f, buffer, sizeof buffer), 6u);  // short read at the end
  EXPECT_STREQ(buffer, "456789");
  EXPECT_EQ(p::read(f, buffer, sizeof buffer), 0u);
  p::close(f);

  write_text(other, "new");
  EXPECT_TRUE(p::replace_file(other.c_str(), path.c_str()));  // over an existing file
  f = p::open_read(path.c_str());
  EXPECT_EQ(p::length(f), 3u);
  p::close(f);
  EXPECT_FALSE(p::open_read(other.c_str()).is_open());  // moved away
  p::remove_file(path.c_str());
  EXPECT_FALSE(p::open_read(path.c_str()).is_open());

  // A folder is a folder, and does not open as a file.
  std::string folder = ::testing::TempDir();
  EXPECT_TRUE(p::is_directory(folder.c_str()));
  EXPECT_FALSE(p::open_read(folder.c_str()).is_open());
  EXPECT_FALSE(p::is_directory(path.c_str()));
  EXPECT_FALSE(p::create_write("").is_open());
  EXPECT_FALSE(p::write(p::File{}, "x", 1));
}

TEST(Win32Platform, ProfileComesFromTheSystemReader) {
  std::string ini = temp("profile.ini");
  write_text(ini, "[3]\r\nMasterName = Left stage \r\nSignal=7\r\nC0ToR=-2\r\n[4]\r\nSignal=x\r\n");
  char out[64];
  EXPECT_EQ(p::profile_string(ini.c_str(), "3", "mastername", "?", out, sizeof out), 10u);
  EXPECT_STREQ(out, "Left stage");
  EXPECT_EQ(p::profile_string(ini.c_str(), "3", "MasterName", "?", out, 5), 4u);  // cut to size - 1
  EXPECT_STREQ(out, "Left");
  p::profile_string(ini.c_str(), "3", "SlaveName", "SLAVE", out, sizeof out);
  EXPECT_STREQ(out, "SLAVE");
  EXPECT_EQ(p::profile_int(ini.c_str(), "3", "Signal", 2), 7);
  EXPECT_EQ(p::profile_int(ini.c_str(), "9", "Signal", 2), 2);
  EXPECT_EQ(p::profile_int(ini.c_str(), "4", "Signal", 2), 0);
  // No file name: the default, never WIN.INI.
  p::profile_string("", "3", "MasterName", "MASTER", out, sizeof out);
  EXPECT_STREQ(out, "MASTER");
  EXPECT_EQ(p::profile_int(nullptr, "3", "Signal", 2), 2);
  p::remove_file(ini.c_str());
}
