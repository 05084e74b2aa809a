#pragma once

#include <QString>

namespace OfficeAssiant {

/// What a user wants to try on a document server, as typed.
struct ServerTest
{
    QString url;
    /// The interface function that the suite would call; it decides the kind of request.
    QString functionName;
    /// Extra request headers, "name:value;name:value".
    QString headerList;
    /// Form fields of a multipart request, written like the headers.
    QString formFieldList;
};

} // namespace OfficeAssiant
