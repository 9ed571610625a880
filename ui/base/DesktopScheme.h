// Whether the desktop prefers dark windows.
#pragma once

#include <functional>
#include <memory>
#include <optional>

class IDesktopScheme {
public:
    virtual ~IDesktopScheme() = default;
    /// True for dark, false for light, nullopt without a preference.
    virtual std::optional<bool> IsDark() const = 0;
};

/// Watches the desktop's preference; `fnChanged` is called on this thread when it becomes known or changes.
std::unique_ptr<IDesktopScheme> WatchDesktopScheme(std::function<void()> fnChanged);
