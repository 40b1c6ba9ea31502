#pragma once
#include <string>

namespace parlowen {

/// The next file of a numbered series: the digits before the first "." of the path plus one, and ".wav".
/// Leading zeros are not kept, a missing number counts as 0: a09.wav gives a10.wav, s.wav gives s1.wav. The
/// first dot counts wherever it stands, also in a folder's name.
std::string nextDigitPathOf(const std::string& path);

}  // namespace parlowen
