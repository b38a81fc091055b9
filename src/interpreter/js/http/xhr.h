#pragma once

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QObject>
#include <QString>

#include <memory>

class QHttpMultiPart;

namespace Torvix {

class FormData;

/**
 * One HTTP exchange at a time, synchronously: send() returns when the reply has finished. Needs a
 * QCoreApplication; send() runs a local event loop on the calling thread, and no timer ends it.
 *
 * Refusals are told by a false result with a text in `*error`, which is untouched on success. A
 * failure of the network or an error status of the server is none: send() is true, and status() shows
 * it (0 when no HTTP status came back). After a reply the next send() needs a new open(), since URL
 * and headers are dropped.
 */
class XmlHttpRequest : public QObject
{
public:
    enum ReadyState { Unsent = 0, Opened = 1, HeadersReceived = 2, Loading = 3, Done = 4 };
    enum Method { NoMethod = 0, Get = 1, Head = 2, Post = 3, Put = 4, Delete = 5 };

    XmlHttpRequest();
    ~XmlHttpRequest() override;

    /**
     * Prepares an exchange. `async` must be false. A `user` that is not null adds Basic
     * authentication (RFC 7617), in the local 8-bit encoding. Headers that were set stay.
     */
    bool open(const QString& method, const QString& url, bool async, const QString& user,
              const QString& password, QString* error);

    /** GET, HEAD, POST, PUT or DELETE, in any case; false for another, which changes nothing. */
    bool setMethod(const QString& method);

    /** Takes the URL in tolerant form; false for an invalid one. */
    bool setUrl(const QString& url);

    /** Sets or replaces a header; only between open() and send(). */
    bool setRequestHeader(const QByteArray& name, const QByteArray& value, QString* error);

    /** A header of the next exchange; a null string if it is not set. */
    QString requestHeader(const QByteArray& name) const;

    /**
     * Sends `data` (with POST and PUT; without a Content-Type it goes as UTF-8 text) and waits.
     *
     * A reply without error that has an absolute http or https Location is followed, with the same
     * method, data and headers, without a limit.
     */
    bool send(const QByteArray& data, QString* error);

    /**
     * Sends the form as multipart/form-data (RFC 7578) with POST or PUT and waits. An empty
     * `boundary` lets one be generated. Redirects are not followed. With another method it refuses,
     * and the state is Loading then.
     */
    bool send(const FormData* form, const QByteArray& boundary, QString* error);

    /** Back to Unsent, which hides the last reply. */
    void abort();

    int readyState() const { return m_readyState; }

    /** The HTTP status; 0 before a reply, and when the exchange ended without one. */
    int status() const;
    /** The reason phrase as it came; empty where status() is 0. */
    QByteArray statusText() const;

    /** The body decoded as UTF-8, up to its first zero byte; empty before a reply. */
    QString response() const;
    QString responseText() const { return response(); }

    /**
     * The value of a header, whose name is compared without regard to case; several values are
     * joined by ", ". A null string if there is none, or no reply.
     */
    QString responseHeader(const QByteArray& name) const;

    /** "name: value" and CR LF for each header that came; empty before a reply. */
    QString allResponseHeaders() const;

private:
    bool hasResponse() const;
    void beginLoading();
    QNetworkReply* start(const QByteArray& data);
    bool await(QNetworkReply* reply);
    bool followRedirect();
    void finish();

    bool m_errorFlag = false;
    int m_readyState = Unsent;
    int m_method = NoMethod;
    QNetworkAccessManager m_manager;
    QNetworkRequest m_request;
    std::unique_ptr<QNetworkReply> m_reply;
    QString m_response;
};

/**
 * The form's entries as parts, in the form's own order, values in the local 8-bit encoding. The key
 * stands in the part's header as it is.
 */
std::unique_ptr<QHttpMultiPart> encodeFormData(const FormData* form, const QByteArray& boundary);

} // namespace Torvix
