#include "exchange/set_aside.h"

#include "support/test_home.h"

#include <QDir>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class SetAside : public FactoryHome {
protected:
    SetAside() { QDir().mkdir(path(u"out"_s)); }

    QStringList names() const {
        return QDir(path(u"out"_s)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
    }

    const QString file = path(u"out/x.txt"_s);
};

TEST_F(SetAside, FreesTheNameAndBringsTheFileBack) {
    writeFile(file, "old");
    {
        const exchange::SetAside aside(file);
        EXPECT_FALSE(exists(file));
        EXPECT_EQ(names(), QStringList{u"x.txt.velloria-old1"_s});
    }
    EXPECT_EQ(bytesOf(file), "old");
    EXPECT_EQ(names(), QStringList{u"x.txt"_s});
}

TEST_F(SetAside, WhatWasBegunInItsPlaceGoes) {
    for (const bool isThere : {true, false}) {
        if (isThere)
            writeFile(file, "old");
        exchange::SetAside aside(file);
        writeFile(file, "half of the n");
        aside.bringBack();
        EXPECT_EQ(names(), isThere ? QStringList{u"x.txt"_s} : QStringList());
        if (isThere) {
            EXPECT_EQ(bytesOf(file), "old");
        }
        QFile::remove(file);
    }
}

TEST_F(SetAside, AWholeFileTakesItsPlaceWithNoMorePermissions) {
    writeFile(file, "old");
    QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner);
    exchange::SetAside aside(file);
    writeFile(file, "new");
    EXPECT_EQ(aside.drop(), QString());
    EXPECT_EQ(bytesOf(file), "new");
    EXPECT_EQ(names(), QStringList{u"x.txt"_s});
    EXPECT_EQ(modeOf(file), 0600U);
}

TEST_F(SetAside, KeepsTheOldFileWhenNoNewOneHasCome) {
    writeFile(file, "old");
    exchange::SetAside aside(file);
    const QString kept = aside.drop();
    EXPECT_EQ(bytesOf(kept), "old");
    EXPECT_FALSE(exists(file));
}

TEST_F(SetAside, TakesNoNameThatIsTaken) {
    writeFile(file, "old");
    writeFile(file + u".velloria-old1"_s, "of a run that was killed");
    ASSERT_TRUE(QFile::link(path(u"nowhere"_s), file + u".velloria-old2"_s));
    {
        const exchange::SetAside aside(file);
        EXPECT_TRUE(exists(file + u".velloria-old3"_s));
    }
    EXPECT_EQ(bytesOf(file), "old");
    EXPECT_EQ(bytesOf(file + u".velloria-old1"_s), "of a run that was killed");
}

TEST_F(SetAside, TakesUpWhatAKilledRunHasSetAside) {
    const QString left = file + u".velloria-old1"_s;
    writeFile(left, "old");
    writeFile(path(u"out/.velltmp-1"_s), "half of the n");
    { const exchange::SetAside aside(file); }
    EXPECT_EQ(bytesOf(file), "old");
    EXPECT_EQ(names(), QStringList{u"x.txt"_s});
    ASSERT_TRUE(QFile::rename(file, left));
    exchange::SetAside aside(file);
    writeFile(file, "new");
    EXPECT_EQ(aside.drop(), QString());
    EXPECT_EQ(bytesOf(file), "new");
    EXPECT_EQ(names(), QStringList{u"x.txt"_s});
}

TEST_F(SetAside, WorksForALongName) {
    const QString longName = path(u"out/"_s) + QString(85, u'あ'); // 255 bytes
    writeFile(longName, "old");
    { const exchange::SetAside aside(longName); }
    EXPECT_EQ(bytesOf(longName), "old");
}

TEST_F(SetAside, LeavesAFileThatIsSetReadOnly) {
    writeFile(file, "old");
    QFile::setPermissions(file, QFile::ReadOwner);
    EXPECT_NE(failureOf([&] { exchange::SetAside aside(file); }), QString());
    EXPECT_EQ(bytesOf(file), "old");
    EXPECT_EQ(names(), QStringList{u"x.txt"_s});
}

TEST_F(SetAside, HasNothingToDoWithAFolder) {
    QDir().mkdir(file);
    {
        exchange::SetAside aside(file);
        aside.bringBack();
    }
    EXPECT_TRUE(QFileInfo(file).isDir());
}

TEST_F(SetAside, SaysWhereTheFileLiesThatCantComeBack) {
    writeFile(file, "old");
    QString failure;
    {
        exchange::SetAside aside(file);
        QDir().mkdir(file); // by the plug-in
        writeFile(file + u"/x"_s, "x");
        failure = failureOf([&] { aside.bringBack(); });
    }
    EXPECT_TRUE(failure.contains(file + u".velloria-old1"_s)) << failure.toStdString();
    EXPECT_EQ(bytesOf(file + u".velloria-old1"_s), "old");
}

} // namespace
} // namespace velloria::tests
