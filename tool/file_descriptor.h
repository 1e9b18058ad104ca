#pragma once

#include <unistd.h>

#include <utility>

namespace tool {

/// An open descriptor, closed with its owner.
class FileDescriptor {
  public:
    FileDescriptor() = default;
    /// Takes over a descriptor; a negative one stands for none.
    explicit FileDescriptor(int number) noexcept : number_(number) {}
    ~FileDescriptor() {
        if (isOpen()) {
            ::close(number_);
        }
    }
    FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }

    [[nodiscard]] bool isOpen() const noexcept { return number_ >= 0; }
    [[nodiscard]] int number() const noexcept { return number_; }

  private:
    int number_ = -1;
};

}  // namespace tool
