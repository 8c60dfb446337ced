#include "platform/profile_sections.h"

#include "platform/file_write.h"
#include "platform/profile_file.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class ProfileSections : public testing::Test {
protected:
    QString file() const { return folder.filePath(u"x.ini"_s); }
    QStringList sectionsOf(const QByteArray& bytes) const {
        platform::replaceFile(file(), bytes, platform::Durability::Derived);
        return platform::profileSections(file());
    }

    QTemporaryDir folder;
};

TEST_F(ProfileSections, OfAMissingOrEmptyFileAreNone) {
    EXPECT_EQ(platform::profileSections(file()), QStringList());
    EXPECT_EQ(sectionsOf(""), QStringList());
    EXPECT_EQ(sectionsOf("key=1\r\n;[x]\r\n[]\r\n"), QStringList());
}

TEST_F(ProfileSections, ComeInTheFilesOrderAndOnce) {
    EXPECT_EQ(sectionsOf("[b]\r\nk=1\r\n[a]\n[ c d ]\r\n[B]\r\n[a]"), (QStringList{u"b"_s, u"a"_s, u"c d"_s}));
}

TEST_F(ProfileSections, AreTextOfTheCodePage) {
    EXPECT_EQ(sectionsOf("[\x83\x5D\x8C\x8E]\r\n[&#233;]\r\n"), (QStringList{u"ゾ月"_s, u"é"_s}));
}

/// The platform's own list ends with its buffer.
TEST_F(ProfileSections, AreAllThereAre) {
    QByteArray bytes;
    for (int i = 0; i < 1000; ++i)
        bytes += "[section" + QByteArray::number(i) + "]\r\n";
    const QStringList sections = sectionsOf(bytes);
    ASSERT_EQ(sections.size(), 1000);
    EXPECT_EQ(sections.last(), u"section999"_s);
    EXPECT_LT(platform::ProfileFile(file()).sections().size(), 400);
}

} // namespace
} // namespace velloria::tests
