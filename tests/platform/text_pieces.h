// Random texts that collide.
#pragma once

#include <QStringList>

#include <random>

namespace velloria::tests {

/// Random texts out of a few pieces, so that equal, overlapping and nearly equal ones are frequent.
class TextPieces {
public:
    explicit TextPieces(QStringList pieces)
        : m_pieces(std::move(pieces)) {}

    QString text(int longest) {
        QString text;
        for (int left = number(longest); left > 0; --left)
            text += m_pieces[number(int(m_pieces.size()) - 1)];
        return text;
    }
    int number(int highest) { return std::uniform_int_distribution<int>(0, highest)(m_engine); }

private:
    QStringList m_pieces;
    std::mt19937 m_engine{20040105};
};

} // namespace velloria::tests
