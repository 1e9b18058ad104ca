#pragma once

#include <string>

#include "tool/file_descriptor.h"

namespace tool {

/// What keeps other scans off a catalogue. It is a lock on a file of its own beside the catalogue,
/// so that searching goes on meanwhile, and the system takes it off however the process ends.
class ScanLock {
  public:
    /// For a catalogue. Raises std::system_error when the file cannot be opened or made.
    explicit ScanLock(const std::string& catalogue);
    /// Removes the file when the lock is held.
    ~ScanLock();
    ScanLock(const ScanLock&) = delete;
    ScanLock& operator=(const ScanLock&) = delete;

    /// Takes the lock if no other scan has it. Raises std::system_error when the system has no
    /// locks there.
    [[nodiscard]] bool take();

  private:
    void open();

    std::string path_;
    FileDescriptor file_;
    bool isHeld_ = false;
};

}  // namespace tool
