#pragma once
// A small file system of its own (tmpfs) for the life of the object: a full disk or a read-only
// folder, made real. Mounting needs the right to mount; where it is missing, Mounted() is false
// and Reason() says why, for GTEST_SKIP.

#include <sys/mount.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "support/temp_dir.h"

namespace pxtest {

class SmallDisk {
public:
    explicit SmallDisk(unsigned long bytes) : SmallDisk(bytes, std::string()) {}
    // Mounted over the folder `at` (hiding what it held until the end), or a new folder when "".
    SmallDisk(unsigned long bytes, std::string at)
        : path_(at.empty() ? dir_.Path() : at), options_("size=" + std::to_string(bytes))
    {
        if (mount("tmpfs", path_.c_str(), "tmpfs", MS_NOSUID | MS_NODEV, options_.c_str()) == 0)
            mounted_ = true;
        else
            reason_ = std::string("cannot mount a small tmpfs here (") + std::strerror(errno) +
                      "); run as root or with CAP_SYS_ADMIN to test a full disk";
    }
    ~SmallDisk()
    {
        if (mounted_)
            umount2(path_.c_str(), MNT_DETACH);
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    bool Mounted() const { return mounted_; }
    const std::string& Reason() const { return reason_; }
    const std::string& Path() const { return path_; }
    std::string File(const std::string& name) const { return path_ + "/" + name; }

    // From now on nothing can be written here.
    bool MakeReadOnly()
    {
        return mounted_ &&
               mount(nullptr, path_.c_str(), nullptr, MS_REMOUNT | MS_RDONLY | MS_NOSUID | MS_NODEV,
                     options_.c_str()) == 0;
    }

private:
    TempDir dir_;
    std::string path_;
    std::string options_;
    std::string reason_;
    bool mounted_ = false;
};

}  // namespace pxtest
