// SPDX-License-Identifier: GPL-3.0-or-later
// Hearing that a file's permissions have changed (inotify).

#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace wqv
{

/** Follows the attributes of files: a session that becomes active gives its user access to a node without an event of udev's.
    Message thread. Where the kernel has no watches left, nothing is heard. */
class AttributeWatch
{
public:
    /** @param onChange  called for a change of any file in a folder that is followed, with the file's name */
    explicit AttributeWatch (std::function<void (std::string_view)> onChange);
    ~AttributeWatch();

    AttributeWatch (const AttributeWatch&) = delete;
    AttributeWatch& operator= (const AttributeWatch&) = delete;

    /** Follows the folder that a file lies in: the file itself can be followed only by who may read it. Once or more often
        is the same. */
    void followFolderOf (const std::string& path) const;

private:
    void readEvents();

    const int descriptor;
    std::function<void (std::string_view)> callback;
};

} // namespace wqv
