// Parts of GCC's run time, written smaller. Its own bring the formatting of messages, names of types and the
// texts of another age, which nobody sees in a DLL in Excel: a fifth of the DLL. The names are the run
// time's. Whoever uses the add-in's libraries without the DLL has GCC's.
#ifdef __GNUG__

#include <cstdlib>
#include <exception>
#include <new>

// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,cert-dcl58-cpp): see above

namespace __gnu_cxx {
// Called when an exception has no handler, to print the exception's decoded name.
void __verbose_terminate_handler() { std::abort(); }
} // namespace __gnu_cxx

namespace {

// What the library throws when it is used wrongly. `what` is one of its literals.
class Misuse final : public std::exception {
  public:
    explicit Misuse(const char* what) noexcept : what_{what} {}
    const char* what() const noexcept override { return what_; }

  private:
    const char* what_;
};

} // namespace

namespace std {
void __throw_bad_alloc() { throw bad_alloc{}; }
void __throw_bad_array_new_length() { throw bad_array_new_length{}; }
void __throw_bad_function_call() { throw Misuse{"bad_function_call"}; }
void __throw_length_error(const char* what) { throw Misuse{what}; }
void __throw_logic_error(const char* what) { throw Misuse{what}; }
void __throw_out_of_range(const char* what) { throw Misuse{what}; }
void __throw_out_of_range_fmt(const char* what, ...) { throw Misuse{what}; }
} // namespace std

// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,cert-dcl58-cpp)

#endif
