#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "base/Files.h"

namespace parlowen {

/// The rows of a CSV file (RFC 4180: cells in quotes may hold commas, line ends and doubled quotes), one after the other
/// and with little memory, whatever the file's length. LF or CRLF; a byte order mark and lines that begin with "#" before
/// the first row are skipped, empty lines too.
class CsvRows {
 public:
  static constexpr std::size_t kMostBytes = std::size_t{1} << 20;  ///< of a row

  explicit CsvRows(const std::string& path) : file_(path) {}
  bool isOpen() const { return file_.isOpen(); }
  /// The next row's cells. False at the end, and when the file ends inside quotes or a row is longer than kMostBytes.
  bool Next(std::vector<std::string>& cells);
  bool failed() const { return failed_; }

 private:
  int Take();  ///< the next byte, or −1

  InputFile file_;
  std::vector<char> block_;
  std::size_t at_ = 0, filled_ = 0;
  std::int64_t offset_ = 0;
  bool begun_ = false, failed_ = false;
};

}  // namespace parlowen
