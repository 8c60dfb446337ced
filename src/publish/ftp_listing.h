// Looking for a file in a server's listing of a directory.
#pragma once

#include <QByteArray>

namespace velloria::publish {

/// Whether a server takes the name in "LIST name" for that name alone, and for no option or pattern.
bool isPlainForListing(const QByteArray& name);

/// Whether the name's line was in a listing, read piece by piece without keeping it. For one listing; nothing is thrown
/// into the library, which a lack of memory ends as a failed transfer.
///
///     FtpListing listing(name);
///     curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &FtpListing::receive);
///     curl_easy_setopt(easy, CURLOPT_WRITEDATA, &listing);
class FtpListing {
public:
    /// Without a name every line is a find.
    explicit FtpListing(QByteArray name);

    /// Takes a piece of the listing; a transfer's write function, whose last argument is the FtpListing.
    static size_t receive(char* data, size_t size, size_t count, void* self);

    /// At the end of the listing.
    bool isFound();

private:
    void take(QByteArrayView bytes);
    void endLine();

    QByteArray m_name;
    QByteArray m_lineEnd;
    QByteArray m_line;
    bool m_isFound = false;
};

} // namespace velloria::publish
