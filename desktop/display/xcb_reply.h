// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdlib>
#include <memory>

/** What an X server has sent; freed in the end. */
template <typename Reply>
std::unique_ptr<Reply, decltype(&std::free)> owned(Reply *reply)
{
    return {reply, &std::free};
}
