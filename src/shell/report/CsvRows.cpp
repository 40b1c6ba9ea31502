#include "shell/report/CsvRows.h"

namespace parlowen {

int CsvRows::Take() {
  if (at_ == filled_) {
    block_.resize(std::size_t{1} << 16);
    filled_ = file_.ReadAt(offset_, block_.data(), block_.size());
    offset_ += static_cast<std::int64_t>(filled_);
    at_ = 0;
    if (filled_ == 0) return -1;
  }
  return static_cast<unsigned char>(block_[at_++]);
}

bool CsvRows::Next(std::vector<std::string>& cells) {
  while (!failed_) {
    cells.assign(1, {});
    bool quoted = false, closing = false, any = false, note = false;
    std::size_t bytes = 0;
    int byte = Take();
    for (; byte >= 0; byte = Take()) {
      const char character = static_cast<char>(byte);
      if (!quoted && byte == '\n') break;
      if (++bytes > kMostBytes) {
        failed_ = true;
        return false;
      }
      if (!begun_ && bytes <= 3 && character == "\xEF\xBB\xBF"[bytes - 1]) continue;
      if (!begun_ && !any && byte == '#') note = true;
      any = true;
      if (byte == '"' && !note) {
        // A second quote right behind the one that closed is a quote of the text.
        if (!quoted && closing) cells.back() += '"';
        closing = quoted;
        quoted = !quoted;
        continue;
      }
      closing = false;
      if (byte == ',' && !quoted)
        cells.emplace_back();
      else
        cells.back() += character;
    }
    if (quoted) failed_ = true;
    if (failed_ || (byte < 0 && !any)) return false;
    if (!quoted && !cells.back().empty() && cells.back().back() == '\r') cells.back().pop_back();
    if (note || !any || (cells.size() == 1 && cells[0].empty())) continue;
    begun_ = true;
    return true;
  }
  return false;
}

}  // namespace parlowen
