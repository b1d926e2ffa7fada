// One sketch at a time: a lock on a file in the user's runtime folder.
//
// Owner:  the lock belongs to the open file, not to a process. A child that is forked has it too, and it ends when the
//         last of them closed it or ended, in whatever way. So who starts a sketch takes the lock, the process that
//         goes on with it inherits the descriptor, and there is no moment without.
// Shapes: the file says who holds the lock: lines "pid 4711", "start 123456", "since 2026-11-03T14:05:09+01:00",
//         "document %2Ftmp%2Fa.svg" and "end". It stays when the lock ends; it means something only while it is held.
// Errors: a sentence, in the form of result.h.
#pragma once

#include "host/kit/result.h"

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>

namespace vnt::host {

struct LockHolder {
    pid_t pid = 0;
    std::uint64_t start_time = 0; // as in EditorProcess
    std::string since;            // local time, ISO 8601
    std::string document;         // what is sketched on, for people; may be empty
};

class SketchLock {
public:
    SketchLock(SketchLock&& other) noexcept;
    SketchLock& operator=(SketchLock&& other) noexcept;
    ~SketchLock();

    // The lock, or none when it is held. Never waits.
    static Result<std::optional<SketchLock>> try_lock(const std::string& path);

    // The lock that was inherited with an open file; none when the descriptor is no open file of this path, or what
    // it is does not hold the lock.
    static std::optional<SketchLock> adopt(int descriptor, const std::string& path);

    // Who holds the lock, as far as it is known; none when nobody does.
    static std::optional<LockHolder> holder(const std::string& path);

    // Writes that this process holds the lock since now.
    //
    // Errors: silent: the lock is held in any case, and the file only says by whom.
    void sign(const std::string& document) const;

    // Whether a program that is executed inherits the lock; not, to begin with.
    void set_inherited(bool inherited) const;

    int descriptor() const { return descriptor_; }

    // Leaves the descriptor open and to the caller.
    int release();

private:
    explicit SketchLock(int descriptor) : descriptor_(descriptor) {}

    int descriptor_;
};

} // namespace vnt::host
