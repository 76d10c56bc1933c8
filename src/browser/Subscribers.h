#pragma once

#include <algorithm>
#include <memory>
#include <vector>

// The subscribers of one event source. Each delivery holds its subscriber alive until the
// handler returns, so a subscriber dropped by its owner meanwhile is never used after free.
template <class Sink> class Subscribers
{
public:
    void add(const std::shared_ptr<Sink>& sink) { m_sinks.push_back(sink); }
    void remove(const Sink* sink)
    {
        m_sinks.erase(std::remove_if(m_sinks.begin(), m_sinks.end(),
                                     [sink](const std::weak_ptr<Sink>& s) {
                                         const auto locked = s.lock();
                                         return !locked || locked.get() == sink;
                                     }),
                      m_sinks.end());
    }
    // The live subscribers at this moment, each held for the caller.
    std::vector<std::shared_ptr<Sink>> snapshot() const
    {
        std::vector<std::shared_ptr<Sink>> live;
        for (const auto& s : m_sinks) {
            if (auto locked = s.lock())
                live.push_back(std::move(locked));
        }
        return live;
    }
    bool empty() const { return snapshot().empty(); }

private:
    std::vector<std::weak_ptr<Sink>> m_sinks;
};
