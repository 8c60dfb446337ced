// The scrambler of stored passwords. It keeps a password from being read at a glance and protects nothing.
#pragma once

#include <QString>

namespace velloria::convert {

/// Steps each character to the next code of code page 932 and reverses the whole: "abc" gives "dcb". At the end of an
/// unbroken run of codes the step goes back to the run's start, so that no two texts scramble to the same. Characters
/// that the page lacks step along their own runs of code points.
QString EncryptPassword(const QString& text);

/// The inverse of EncryptPassword, for every text without lone surrogates.
QString DecryptPassword(const QString& text);

/// The password that a settings file holds, given the value as ReadIni or ReadIniDef returns it. Not DecryptPassword
/// alone: a scrambled text may look like a character reference, which reading has turned into its character.
QString passwordFromSetting(const QString& value);

/// Whether `text` can be a password: it comes back the same from a settings file. Every character is a printable one of
/// code page 932 that reads back as itself, and there are at most 255 bytes. Boxes that take a password refuse the
/// rest.
bool isPasswordText(QStringView text);

} // namespace velloria::convert
