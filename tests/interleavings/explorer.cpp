// SPDX-License-Identifier: MIT
#include "tests/interleavings/explorer.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace interleavings {

namespace {

// A state, and the step that led to it from an earlier one.
struct Visited {
    State state;
    std::size_t from = 0;
    std::string_view step;
};

class CExplorer {
public:
    explicit CExplorer(Variant variant)
        : m_operations(hostOperations(variant)), m_delivery(deliverySteps(variant)) {}

    Exploration run() {
        reach(0, "start", Moment{});
        for (std::size_t at = 0; at < m_visited.size() && m_result.violation.empty(); ++at) {
            const std::size_t before = m_result.transitions;
            const State state = m_visited[at].state;
            if (state.closed == 0) {
                goOn(at, state);
                if (m_result.transitions == before) {
                    found("nothing can go on", at);
                }
            }
        }
        m_result.states = m_visited.size();
        for (const Operation& operation : m_operations) {
            noteUnused(operation.steps);
        }
        noteUnused(m_delivery);
        return std::move(m_result);
    }

private:
    void goOn(std::size_t at, const State& state) {
        goOnHost(at, state);
        goOnDelivery(at, state);
        if (state.connected != 0) {
            Moment moment{state};
            moment.state.connected = 0;
            moment.state.live = 0;
            reach(at, "the camera is lost", moment);
        }
    }

    void goOnHost(std::size_t at, const State& state) {
        if (state.operation != idle) {
            take(at, state, state.operation);
            return;
        }
        for (std::uint8_t operation = 0; operation < m_operations.size(); ++operation) {
            State begun = state;
            begun.operation = operation;
            begun.hostStep = 0;
            begun.promised = operation == copyOperation ? begun.promised : no;
            take(at, begun, operation);
        }
    }

    void take(std::size_t at, const State& state, std::uint8_t operation) {
        const Steps& steps = m_operations[operation].steps;
        const Step& step = steps[state.hostStep];
        for (std::uint8_t choice = 0; choice < step.choices; ++choice) {
            Moment moment{state};
            Next next = step.run(moment, choice);
            if (next == Next::impossible) {
                continue;
            }
            if (next == Next::step && ++moment.state.hostStep == steps.size()) {
                next = Next::end;
            }
            if (next == Next::end) {
                moment.state.operation = moment.state.closed != 0 ? closeOperation : idle;
                moment.state.hostStep = 0;
                moment.state.mayTouch = 0;
                moment.state.promised = operation == copyOperation ? no : moment.state.promised;
            }
            reach(at, step.text, moment);
        }
    }

    void goOnDelivery(std::size_t at, const State& state) {
        const bool begins = state.deliveryStep == idle;
        if (begins && state.live == 0) {
            return;
        }
        const std::uint8_t place = begins ? std::uint8_t{0} : state.deliveryStep;
        const Step& step = m_delivery[place];
        for (std::uint8_t choice = 0; choice < step.choices; ++choice) {
            Moment moment{state};
            const Next next = step.run(moment, choice);
            if (next == Next::impossible) {
                continue;
            }
            moment.state.deliveryStep =
                static_cast<std::uint8_t>(place + (next == Next::step ? 1 : 0));
            if (next == Next::end) {
                moment.state.deliveryStep = idle;
                moment.state.filled = noBuffer;
                moment.state.failed = 0;
                moment.state.signals = 0;
                moment.state.loaded = {};
            }
            reach(at, step.text, moment);
        }
    }

    void reach(std::size_t from, std::string_view step, Moment moment) {
        ++m_result.transitions;
        m_result.witnesses |= moment.witnesses;
        m_used.insert(step);
        expectInvariants(moment);
        const char* bytes = static_cast<const char*>(static_cast<const void*>(&moment.state));
        const bool isNew = m_known.emplace(bytes, sizeof(State)).second;
        if (!isNew && moment.violation == nullptr) {
            return;
        }
        m_visited.push_back({moment.state, from, step});
        if (moment.violation != nullptr && m_result.violation.empty()) {
            found(moment.violation, m_visited.size() - 1);
        }
    }

    void found(std::string_view violation, std::size_t at) {
        m_result.violation = violation;
        for (; at != 0; at = m_visited[at].from) {
            m_result.trace.emplace_back(m_visited[at].step);
        }
        std::reverse(m_result.trace.begin(), m_result.trace.end());
    }

    void noteUnused(const Steps& steps) {
        for (const Step& step : steps) {
            if (!m_used.contains(step.text)) {
                m_result.unused.emplace_back(step.text);
            }
        }
    }

    std::vector<Operation> m_operations;
    Steps m_delivery;
    std::vector<Visited> m_visited;
    std::unordered_set<std::string> m_known;
    std::unordered_set<std::string_view> m_used;
    Exploration m_result;
};

}  // namespace

Exploration explore(Variant variant) {
    return CExplorer(variant).run();
}

}  // namespace interleavings
