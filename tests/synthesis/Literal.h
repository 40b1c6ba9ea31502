#pragma once
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace parlowen::testing {

/// The method once more, step by step and slowly: every cosine where it is used, every search from the
/// beginning, one wrapping sum at a time. `sound` is the whole document.
struct Literal {
  std::vector<std::int16_t> sound;
  std::vector<float> contour;
  int rate = 16000, start = 0, end = 0;

  int Length() const { return end - start; }
  int W(std::int64_t k) const {
    k += start;
    return k >= 0 && k < std::ssize(sound) ? sound[static_cast<std::size_t>(k)] : 0;
  }
  float P(int frame) const {
    return frame < std::ssize(contour) ? contour[static_cast<std::size_t>(frame)] : 0.0f;
  }

  std::vector<int> Marks(int polarity) const {
    const std::vector<double> c = rate < 10000 ? std::vector<double>{0.2, 0.187098, 0.151365, 0.10091}
                                               : std::vector<double>{0.151516, 0.145858, 0.129644, 0.105023};
    std::vector<double> out;
    double delay[7] = {}, largest = 0;
    const int behind = rate / 10;  // searches go on behind the selection
    for (int k = 0; k < Length() + behind; ++k) {
      std::move_backward(delay, delay + 6, delay + 7);
      delay[0] = W(k);
      double sum = c[0] * delay[3];
      for (std::size_t d = 1; d <= 3; ++d) sum += c[d] * (delay[3 - d] + delay[3 + d]);
      out.push_back(sum);
      if (k < Length() + 5) largest = std::max(largest, std::fabs(sum));
    }
    if (largest == 0) return {};
    const auto y = [&](int k) {
      return k < 0 || k + 3 >= std::ssize(out)
                 ? 0
                 : static_cast<int>(out[static_cast<std::size_t>(k) + 3] * (1000 / largest));
    };

    std::vector<int> marks;
    const int first = static_cast<int>(std::int64_t{start} * 100 / rate),
              last = static_cast<int>(std::int64_t{end} * 100 / rate);
    int f = first;
    while (f <= last) {
      if (P(f) < 1.0f || (f != first && P(f - 1) >= 1.0f)) {
        ++f;
        continue;
      }
      int period = static_cast<int>(P(f)), afterRun = f, found = -1;
      while (afterRun <= last && P(afterRun) >= 1.0f) ++afterRun;
      int o = (f - first) * rate / 100 - rate / 200;
      if (o < 0) o = 0;
      const int stop = std::min((afterRun - first) * rate / 100, Length());
      for (; found < 0 && o < stop; o += period) {
        int best = -30000, at = o;
        for (int k = o; k <= o + period - 1; ++k)
          if (y(k) * polarity > best) best = y(at = k) * polarity;
        if (best >= 100) found = at;
      }
      if (found < 0) {
        ++f;
        continue;
      }
      marks.push_back(found);
      for (;;) {
        f = first + static_cast<int>(std::int64_t{marks.back()} * 100 / rate);
        period = static_cast<int>(P(f) < 1.0f ? P(f + 1) : P(f));
        if (period > rate / 80) period = rate / 80;
        if (period < 1) break;
        if (f >= last || marks.size() == 32767) return marks;
        const int e = marks.back() + period;
        int best = -30000, at = e;
        for (int k = e - period / 4; k <= e + period / 4 - 1; ++k)
          if (y(k) > best) best = y(at = k);
        marks.push_back(at);
      }
    }
    return marks;
  }

  std::vector<std::int16_t> Output(const std::vector<int>& m, const std::vector<float>& target) const {
    constexpr double pi = 3.1415927;
    const int size = Length() + 100;
    std::vector<std::int16_t> o(static_cast<std::size_t>(size), 0);
    const auto add = [&](std::int64_t k, int value) {
      if (k < 0 || k >= size) return;
      const int sum = o[static_cast<std::size_t>(k)] + value;
      o[static_cast<std::size_t>(k)] = static_cast<std::int16_t>((sum + 32768 + 65536 * 4) % 65536 - 32768);
    };
    const int count = static_cast<int>(m.size());
    if (count == 0) {
      for (int k = 0; k < Length(); ++k) add(k, W(k));
      return o;
    }
    for (int k = 0; k < m[0]; ++k) add(k, W(k));
    std::int64_t t = m[0];
    bool fresh = true;
    for (;;) {
      const auto frame = static_cast<std::size_t>(t * 100 / rate);
      const int period = frame < target.size() ? static_cast<int>(target[frame]) : 0;
      int i = 0;
      while (i <= count - 2 && m[static_cast<std::size_t>(i)] < t + 2) ++i;
      if (i > count - 2) break;
      if (i == 0) i = 1;
      const int mark = m[static_cast<std::size_t>(i)], before = m[static_cast<std::size_t>(i - 1)],
                l = mark - before;
      if (l > rate / 64 || period < 1) {
        for (std::int64_t k = t; k < mark; ++k) add(k, W(k));
        t = mark;
        fresh = true;
        continue;
      }
      if (fresh)
        for (int n = 0; n < l; ++n)
          add(t + n, static_cast<int>((std::cos(n * pi / l) + 1) * 0.5 * W(before + n)));
      t += period;
      for (int n = 0; n < 2 * l; ++n)
        add(t - l + n, static_cast<int>((0.5 - 0.5 * std::cos(n * pi / l)) * W(mark + n)));
      fresh = false;
    }
    for (std::int64_t k = t; k < Length(); ++k) o[static_cast<std::size_t>(k)] = 0;
    return o;
  }
};

}  // namespace parlowen::testing
