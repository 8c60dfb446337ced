#include "editor/undo.h"

#include <algorithm>
#include <cstring>

namespace velloria::editor {
namespace {

/// Whole blocks compare at the speed of memory; the place within the last one is then near.
constexpr qsizetype kBlock = 2048;

qsizetype commonBeginning(QStringView left, QStringView right) {
    const qsizetype most = std::min(left.size(), right.size());
    qsizetype at = 0;
    while (at + kBlock <= most && std::memcmp(left.data() + at, right.data() + at, kBlock * sizeof(QChar)) == 0)
        at += kBlock;
    while (at < most && left[at] == right[at])
        ++at;
    return at;
}

qsizetype commonEnd(QStringView left, QStringView right) {
    const qsizetype most = std::min(left.size(), right.size());
    qsizetype length = 0;
    const auto fromEnd = [](QStringView text, qsizetype distance) { return text.data() + text.size() - distance; };
    while (length + kBlock <= most &&
           std::memcmp(fromEnd(left, length + kBlock), fromEnd(right, length + kBlock), kBlock * sizeof(QChar)) == 0)
        length += kBlock;
    while (length < most && *fromEnd(left, length + 1) == *fromEnd(right, length + 1))
        ++length;
    return length;
}

} // namespace

void UndoList::reset(const QString& text, int caret) {
    m_steps.clear();
    m_steps.push_back({0, 0, {}, {}, caret});
    m_position = 1;
    m_text = text;
}

void UndoList::record(const QString& text, int caret) {
    const qsizetype beginning = commonBeginning(m_text, text);
    const qsizetype end = commonEnd(QStringView(m_text).sliced(beginning), QStringView(text).sliced(beginning));
    m_steps.push_back({m_position, beginning, m_text.sliced(beginning, m_text.size() - beginning - end),
                       text.sliced(beginning, text.size() - beginning - end), caret});
    m_position = count();
    m_text = text;
}

std::optional<Snapshot> UndoList::undo() {
    if (m_position < 2)
        return std::nullopt;
    return show(m_position - 1);
}

std::optional<Snapshot> UndoList::redo() {
    if (m_position >= count())
        return std::nullopt;
    return show(m_position + 1);
}

/// From the snapshot now shown back to one that both come from, then on to the other. That is one step but where the
/// list was continued after an undo; there it takes as many as were undone.
Snapshot UndoList::show(int number) {
    std::vector<int> ahead;
    int from = m_position;
    int to = number;
    while (from != to) {
        if (from > to) {
            const Step& back = step(from);
            m_text.replace(back.at, back.inserted.size(), back.removed);
            from = back.base;
        } else {
            ahead.push_back(to);
            to = step(to).base;
        }
    }
    for (auto next = ahead.rbegin(); next != ahead.rend(); ++next) {
        const Step& forward = step(*next);
        m_text.replace(forward.at, forward.removed.size(), forward.inserted);
    }
    m_position = number;
    return {m_text, step(number).caret};
}

} // namespace velloria::editor
