#include "platform/unfinished_folder.h"

#include "platform/failure.h"
#include "support/test_home.h"

#include <QDir>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using platform::UnfinishedFolder;

/// For its life nobody may look into the folders that this program makes, and it is nobody of more rights.
class NoRights {
public:
    NoRights() {
        constexpr uid_t kNobody = 65534;
        if (m_user == 0 && ::seteuid(kNobody) != 0)
            ADD_FAILURE();
    }
    ~NoRights() {
        ::umask(m_mask);
        if (::seteuid(m_user) != 0)
            ADD_FAILURE();
    }
    NoRights(const NoRights&) = delete;
    NoRights& operator=(const NoRights&) = delete;

private:
    uid_t m_user = ::geteuid();
    mode_t m_mask = ::umask(0777);
};

class UnfinishedFolders : public ::testing::Test {
protected:
    QStringList names() const {
        return QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    QTemporaryDir folder;
    QString target = folder.filePath(u"target"_s);
};

TEST_F(UnfinishedFolders, OneThatCannotBeOpenedIsRefusedAndLeavesNothing) {
    QFile::setPermissions(folder.path(), QFile::Permissions(0x7777));
    {
        const NoRights none;
        EXPECT_THROW(UnfinishedFolder{target}, platform::Failure);
    }
    EXPECT_EQ(names(), QStringList());
}

TEST_F(UnfinishedFolders, WhatSomebodyIsFillingIsNoLeftover) {
    const UnfinishedFolder filled(target);
    UnfinishedFolder other(folder.filePath(u"other"_s));
    EXPECT_TRUE(QFileInfo(filled.path()).isDir());
    other.finish();
    EXPECT_EQ(names().size(), 2);
    EXPECT_TRUE(names().contains(u"other"_s));
}

} // namespace
} // namespace velloria::tests
