// A diary in the Jet format of the older programs, read by "velloria-jet": what a damaged file does to that program
// never reaches this one.
#pragma once

#include "store/old_diary.h"

#include <chrono>
#include <memory>

namespace velloria::platform {
class ChildProgram;
}

namespace velloria::store {

/// The program that reads the format.
struct JetProgram {
    QString file;                                                 ///< "" is the one beside the running executable
    std::chrono::milliseconds silence = std::chrono::seconds(20); ///< without a sign of progress, then it is ended
};

/// One child reads one table, and waits while nobody asks for its rows; it ends with the object. Whatever goes wrong
/// with it is a platform::Failure that says how many rows of which table were read and how many there should be.
class JetDiary : public OldDiary {
public:
    explicit JetDiary(QString file, JetProgram program = {});
    ~JetDiary() override;

    qint64 open(const QString& table, const QStringList& columns) override;
    bool next(std::vector<OldValue>& row) override;

    /// What its table DBInfo says; 0 without one. Throws platform::Failure.
    qint64 version();

private:
    struct Answer;

    void start(const QStringList& arguments);
    Answer nextAnswer();
    QByteArray nextRecord();
    void requireGoodEnd();
    [[noreturn]] void refuseDamaged(const QString& reason, qint64 expected) const;

    const QString m_file;
    const JetProgram m_program;
    std::unique_ptr<platform::ChildProgram> m_child;
    QString m_table;
    qsizetype m_columns = 0;
    qint64 m_count = -1; ///< that the table should have, -1 while nobody knows
    qint64 m_read = 0;
    bool m_isAtEnd = true;
};

} // namespace velloria::store
