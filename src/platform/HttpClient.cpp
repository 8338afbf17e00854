#include "platform/HttpClient.h"

#include <algorithm>

namespace orvelle {

QByteArray HttpResponse::header(const QByteArray &name) const
{
    const auto named = std::find_if(headers.begin(), headers.end(), [&name](const auto &field) {
        return field.first.compare(name, Qt::CaseInsensitive) == 0;
    });
    return named == headers.end() ? QByteArray() : named->second;
}

} // namespace orvelle
