// The life of an error pair (a flag and its message) across nested library routines.
//
// A routine that can fail opens a scope over its module's pair at its start.  Only the
// outermost scope clears the pair: a routine called by another routine of the library leaves
// a pending error alone, so that no error is wiped before the caller that started the work
// has seen it.  Raising keeps the first error: a later failure inside the same work does not
// replace the message of the one that stopped it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velmoria {

inline void clear_error_pair(bool& flag, std::string& mess) {
  flag = false;
  mess.clear();
}

// Sets the pair unless it is set already; the message is cut to `max_len` characters.
inline void raise_error_pair(bool& flag, std::string& mess, std::string_view text,
                             std::size_t max_len = std::string::npos) {
  if (flag) return;
  flag = true;
  mess = std::string(text.substr(0, max_len));
}

class Error_Scope {
 public:
  Error_Scope(bool& flag, std::string& mess, int& depth) : depth_(depth) {
    if (depth_++ == 0) clear_error_pair(flag, mess);
  }
  ~Error_Scope() {
    if (depth_ > 0) --depth_;  // a run's reset may have zeroed the count already
  }
  Error_Scope(const Error_Scope&) = delete;
  Error_Scope& operator=(const Error_Scope&) = delete;

 private:
  int& depth_;
};

}  // namespace velmoria
