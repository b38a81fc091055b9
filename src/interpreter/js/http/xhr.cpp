#include "interpreter/js/http/xhr.h"

#include "interpreter/js/http/formdata.h"

#include <QEventLoop>
#include <QHttpMultiPart>
#include <QHttpPart>
#include <QPointer>
#include <QUrl>
#include <QVariant>

namespace Torvix {

namespace {

struct MethodName
{
    const char* name;
    XmlHttpRequest::Method method;
};

constexpr MethodName MethodNames[] = {{"GET", XmlHttpRequest::Get},
                                      {"HEAD", XmlHttpRequest::Head},
                                      {"POST", XmlHttpRequest::Post},
                                      {"PUT", XmlHttpRequest::Put},
                                      {"DELETE", XmlHttpRequest::Delete}};

bool refuse(QString* error, const char* text)
{
    if (error)
        *error = QString::fromLatin1(text);
    return false;
}

/** Latin-1 up to the first zero byte. */
QString headerText(const QByteArray& value)
{
    return QString::fromLatin1(value.constData());
}

/** The values of one raw header; Qt joins repeated Set-Cookie headers with line feeds. */
QList<QByteArray> headerValues(const QByteArray& value)
{
    return value.split('\n');
}

} // namespace

XmlHttpRequest::XmlHttpRequest() : m_request(QUrl()) {}

XmlHttpRequest::~XmlHttpRequest() = default;

bool XmlHttpRequest::open(const QString& method, const QString& url, bool async, const QString& user,
                          const QString& password, QString* error)
{
    if (async)
        return refuse(error, "Only synchronous open() calls supported");
    if (!setMethod(method))
        return refuse(error, "Unsupported request method");
    if (!setUrl(url))
        return refuse(error, "Invalid URL");
    if (!user.isNull()) {
        const QByteArray credentials = (user + QLatin1Char(':') + password).toLocal8Bit();
        m_request.setRawHeader("Authorization", "Basic " + credentials.toBase64());
    }
    m_readyState = Opened;
    return true;
}

bool XmlHttpRequest::setMethod(const QString& method)
{
    const QString wanted = method.toUpper();
    for (const MethodName& known : MethodNames) {
        if (wanted == QLatin1String(known.name)) {
            m_method = known.method;
            return true;
        }
    }
    return false;
}

bool XmlHttpRequest::setUrl(const QString& url)
{
    m_request.setUrl(QUrl(url, QUrl::TolerantMode));
    return m_request.url().isValid();
}

bool XmlHttpRequest::setRequestHeader(const QByteArray& name, const QByteArray& value, QString* error)
{
    if (m_readyState != Opened)
        return refuse(error, "Cannot set header unless in OPENED state");
    m_request.setRawHeader(name, value);
    return true;
}

QString XmlHttpRequest::requestHeader(const QByteArray& name) const
{
    return QString::fromUtf8(m_request.rawHeader(name));
}

bool XmlHttpRequest::send(const QByteArray& data, QString* error)
{
    if (m_readyState == Unsent)
        return refuse(error, "Cannot send without prior open() call");
    do {
        beginLoading();
        if (!await(start(data)))
            return true;
    } while (followRedirect());
    finish();
    return true;
}

bool XmlHttpRequest::send(const FormData* form, const QByteArray& boundary, QString* error)
{
    if (m_readyState == Unsent)
        return refuse(error, "Cannot send without prior open() call");
    beginLoading();
    if (m_method != Post && m_method != Put)
        return refuse(error, "Unsupported HTTP Method for sending FormData"); // as documented, Loading stays
    // A receiver finds the parts only by the boundary in the header, which Qt writes if there is none.
    if (m_request.rawHeader("Content-Type").toLower() == "multipart/form-data")
        m_request.setRawHeader("Content-Type", QByteArray());
    std::unique_ptr<QHttpMultiPart> body = encodeFormData(form, boundary);
    QNetworkReply* reply =
        m_method == Post ? m_manager.post(m_request, body.get()) : m_manager.put(m_request, body.get());
    body.release()->setParent(reply); // read from until the reply has finished
    if (await(reply))
        finish();
    return true;
}

void XmlHttpRequest::beginLoading()
{
    m_readyState = Loading;
    m_reply.reset();
}

QNetworkReply* XmlHttpRequest::start(const QByteArray& data)
{
    if ((m_method == Post || m_method == Put) &&
        !m_request.header(QNetworkRequest::ContentTypeHeader).isValid())
        m_request.setHeader(QNetworkRequest::ContentTypeHeader,
                            QByteArrayLiteral("text/plain;charset=UTF-8"));
    switch (m_method) {
    case Head:
        return m_manager.head(m_request);
    case Post:
        return m_manager.post(m_request, data);
    case Put:
        return m_manager.put(m_request, data);
    case Delete:
        return m_manager.deleteResource(m_request);
    default:
        return m_manager.get(m_request);
    }
}

/**
 * Waits until the reply has finished. False if it is gone: what the event loop runs may call send()
 * of this object again, and then that call has seen to the state.
 */
bool XmlHttpRequest::await(QNetworkReply* reply)
{
    m_reply.reset(reply);
    const QPointer<QNetworkReply> awaited(reply);
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    QObject::connect(reply, &QObject::destroyed, &loop, &QEventLoop::quit);
    if (!reply->isFinished())
        loop.exec();
    return !awaited.isNull();
}

bool XmlHttpRequest::followRedirect()
{
    if (m_reply->error() != QNetworkReply::NoError)
        return false;
    const QVariant location = m_reply->header(QNetworkRequest::LocationHeader);
    if (!location.isValid())
        return false;
    const QUrl target(location.toString(), QUrl::TolerantMode);
    // A server must not send us to local files.
    if (target.scheme() != QLatin1String("http") && target.scheme() != QLatin1String("https"))
        return false;
    m_request.setUrl(target);
    return true;
}

void XmlHttpRequest::finish()
{
    const QByteArray body = m_reply->readAll();
    m_response = body.isNull() ? QString() : QString::fromUtf8(body.constData());
    m_request = QNetworkRequest(QUrl());
    m_readyState = Done;
}

void XmlHttpRequest::abort()
{
    m_readyState = Unsent;
}

bool XmlHttpRequest::hasResponse() const
{
    return m_readyState >= HeadersReceived && !m_errorFlag && m_reply;
}

int XmlHttpRequest::status() const
{
    return hasResponse() ? m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() : 0;
}

QByteArray XmlHttpRequest::statusText() const
{
    return hasResponse() ? m_reply->attribute(QNetworkRequest::HttpReasonPhraseAttribute).toByteArray()
                         : QByteArray();
}

QString XmlHttpRequest::response() const
{
    return hasResponse() ? m_response : QString();
}

QString XmlHttpRequest::responseHeader(const QByteArray& name) const
{
    if (!hasResponse())
        return QString();
    QStringList values;
    for (const QNetworkReply::RawHeaderPair& header : m_reply->rawHeaderPairs()) {
        if (qstricmp(header.first.constData(), name.constData()) != 0)
            continue;
        for (const QByteArray& value : headerValues(header.second))
            values += headerText(value);
    }
    if (values.isEmpty())
        return QString();
    const QString joined = values.join(QStringLiteral(", "));
    return joined.isNull() ? QStringLiteral("") : joined;
}

QString XmlHttpRequest::allResponseHeaders() const
{
    if (!hasResponse())
        return QString();
    QString lines;
    for (const QNetworkReply::RawHeaderPair& header : m_reply->rawHeaderPairs()) {
        for (const QByteArray& value : headerValues(header.second))
            lines += QString::fromLatin1(header.first) + QStringLiteral(": ") + QString::fromLatin1(value) +
                     QStringLiteral("\r\n");
    }
    return lines;
}

std::unique_ptr<QHttpMultiPart> encodeFormData(const FormData* form, const QByteArray& boundary)
{
    auto body = std::make_unique<QHttpMultiPart>(QHttpMultiPart::FormDataType);
    if (!boundary.isEmpty())
        body->setBoundary(boundary);
    for (auto entry = form->constBegin(); entry != form->constEnd(); ++entry) {
        QHttpPart part;
        part.setHeader(QNetworkRequest::ContentDispositionHeader,
                       QStringLiteral("form-data; name=\"%1\"").arg(entry.key()));
        part.setBody(entry.value().toLocal8Bit());
        body->append(part);
    }
    return body;
}

} // namespace Torvix
