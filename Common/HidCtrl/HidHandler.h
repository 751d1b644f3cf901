// SPDX-License-Identifier: GPL-3.0-or-later
// The interface of those who hear of the controller: removed, found, a report came.

#pragma once

namespace wqv
{

/** Receives device events, on the message thread. Nobody deletes an object through this interface. */
class HidHandler
{
public:
    /** The device went away. */
    virtual void removalCallBack() = 0;

    /** A matching device is present, for the first time or again. */
    virtual void matchingCallBack() = 0;

    /** An input report arrived. */
    virtual void inputCallBack() = 0;

protected:
    HidHandler() = default;
    HidHandler (const HidHandler&) = default;
    HidHandler& operator= (const HidHandler&) = default;
    ~HidHandler() = default;
};

} // namespace wqv
