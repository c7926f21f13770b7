#pragma once

namespace zenvora::desktop {

/// While it lives, what a widget reports is the program's doing and not the user's.
class Quiet final {
  public:
    explicit Quiet(bool& quiet) : quiet_(quiet), before_(quiet) { quiet_ = true; }
    ~Quiet() { quiet_ = before_; }
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;

  private:
    bool& quiet_;
    bool before_;
};

}  // namespace zenvora::desktop
