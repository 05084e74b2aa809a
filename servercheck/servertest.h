#pragma once

#include <QString>

namespace OfficeAssiant {

/// A test of a document server as the user typed it.
struct ServerTest
{
    QString url;
    /// The interface function that the suite would call; decides the kind of request.
    QString functionName;
    /// Extra request headers, "name:value;name:value".
    QString headerList;
    /// Form fields of a multipart request, written like the headers.
    QString formFieldList;
};

} // namespace OfficeAssiant
