#include "html/HTMLParser.h"

#include <QFile>

#include <curl/curl.h>

#include <string>

namespace {

const char kEncoding[] = "UTF-8";

void reportEmptyInput(AppError* error)
{
    if (!error)
        return;
    *error = AppError();
    error->domain = QStringLiteral("HTMLParserdomain");
    error->code = 1;
}

size_t appendToByteArray(char* data, size_t size, size_t count, void* target)
{
    static_cast<QByteArray*>(target)->append(data, static_cast<qsizetype>(size * count));
    return size * count;
}

bool readURL(const QUrl& url, QByteArray& bytes, AppError& error)
{
    if (url.isLocalFile() || url.scheme().isEmpty()) {
        QFile file(url.isLocalFile() ? url.toLocalFile() : url.toString());
        if (!file.open(QIODevice::ReadOnly)) {
            error.domain = QStringLiteral("QFileDevice");
            error.code = static_cast<int>(file.error());
            error.localizedDescription = file.errorString();
            return false;
        }
        bytes = file.readAll();
        return true;
    }
    CURL* curl = curl_easy_init();
    if (!curl) {
        error.domain = QStringLiteral("libcurl");
        error.code = CURLE_FAILED_INIT;
        return false;
    }
    const QByteArray address = url.toEncoded();
    curl_easy_setopt(curl, CURLOPT_URL, address.constData());
    curl_easy_setopt(curl, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(curl, CURLOPT_FAILONERROR, 1L);
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl, CURLOPT_TIMEOUT, 1000L); // the crawler's own request time-out
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, appendToByteArray);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, &bytes);
    const CURLcode code = curl_easy_perform(curl);
    curl_easy_cleanup(curl);
    if (code != CURLE_OK) {
        error.domain = QStringLiteral("libcurl");
        error.code = static_cast<int>(code);
        error.localizedDescription = QString::fromUtf8(curl_easy_strerror(code));
        return false;
    }
    return true;
}

} // namespace

void HTMLParser::adopt(htmlDocPtr document)
{
    if (document)
        doc_ = std::shared_ptr<xmlDoc>(document, xmlFreeDoc);
}

HTMLParserPtr HTMLParser::initWithString(const QString& string, AppError* error)
{
    auto parser = std::make_shared<HTMLParser>();
    if (string.isEmpty()) {
        reportEmptyInput(error);
        return parser;
    }
    const QByteArray utf8 = string.toUtf8();
    parser->adopt(htmlReadDoc(reinterpret_cast<const xmlChar*>(utf8.constData()), nullptr, kEncoding,
                              kStringParseOptions));
    return parser;
}

HTMLParserPtr HTMLParser::initWithData(const QByteArray& data, AppError* error)
{
    auto parser = std::make_shared<HTMLParser>();
    if (data.isNull()) {
        reportEmptyInput(error);
        return parser;
    }
    // htmlReadDoc reads up to a zero byte; a byte array is not guaranteed to carry one after
    // its last byte (raw data), so parse a terminated copy.
    const std::string terminated(data.constData(), static_cast<size_t>(data.size()));
    parser->adopt(htmlReadDoc(reinterpret_cast<const xmlChar*>(terminated.c_str()), "", kEncoding,
                              kDataParseOptions));
    return parser;
}

HTMLParserPtr HTMLParser::initWithContentsOfURL(const QUrl& url, AppError* error)
{
    AppError readError;
    QByteArray bytes;
    const bool read = readURL(url, bytes, readError);
    if (error)
        *error = readError;
    if (!read || !readError.domain.isEmpty())
        return nullptr;
    if (bytes.isNull())
        bytes = QByteArray(""); // an empty resource is still data, not a missing one
    return initWithData(bytes, error);
}

HTMLNodePtr HTMLParser::doc() const
{
    if (!doc_)
        return nullptr;
    return std::make_shared<HTMLNode>(reinterpret_cast<xmlNode*>(doc_.get()), doc_);
}

HTMLNodePtr HTMLParser::findInDocument(const char* tagName) const
{
    HTMLNodePtr document = doc();
    return document ? document->findChildTag(QString::fromLatin1(tagName)) : nullptr;
}

HTMLNodePtr HTMLParser::html() const
{
    return findInDocument("html");
}

HTMLNodePtr HTMLParser::head() const
{
    return findInDocument("head");
}

HTMLNodePtr HTMLParser::body() const
{
    return findInDocument("body");
}
