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

// The error pair of a library module `name`: the flag err_<name>, its message err_<name>_mess
// and the count err_<name>_depth of open scopes; init_err_<name>() clears the pair,
// reset_<name>_state() clears it and forgets the scopes (the state a run starts from),
// set_err_<name>(message) raises it unless an error is pending (the message cut to max_len
// characters), and `Scope` is opened at the start of a routine that can raise it.  One
// definition for every module, declared in the module's header and defined in its source.
#define VELMORIA_ERROR_PAIR_DECLARATIONS(name, Scope)                           \
  extern constinit thread_local bool err_##name;                                \
  extern thread_local std::string err_##name##_mess;                            \
  extern constinit thread_local int err_##name##_depth;                         \
  void init_err_##name();                                                       \
  void reset_##name##_state();                                                  \
  void set_err_##name(std::string_view message);                                \
  struct Scope : Error_Scope {                                                  \
    Scope() : Error_Scope(err_##name, err_##name##_mess, err_##name##_depth) {} \
  }

#define VELMORIA_ERROR_PAIR_DEFINITIONS(name, max_len)                 \
  constinit thread_local bool err_##name = false;                      \
  thread_local std::string err_##name##_mess;                          \
  constinit thread_local int err_##name##_depth = 0;                   \
  void init_err_##name() {                                             \
    clear_error_pair(err_##name, err_##name##_mess);                   \
  }                                                                    \
  void reset_##name##_state() {                                        \
    clear_error_pair(err_##name, err_##name##_mess);                   \
    err_##name##_depth = 0;                                            \
  }                                                                    \
  void set_err_##name(std::string_view message) {                      \
    raise_error_pair(err_##name, err_##name##_mess, message, max_len); \
  }
