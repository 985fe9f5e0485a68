// The TCP side of the simulated Videohub: several clients, and the faults that a real line has.
#pragma once

#include "tests/sim/videohub_router.h"

#include <QByteArray>
#include <QHostAddress>
#include <QObject>
#include <QPointer>
#include <QTcpServer>

#include <vector>

namespace corvane::sim {

/// Every change goes to every client. A client that sends lines or blocks without end, or that doesn't read,
/// is cut off.
class VideohubServer : public QObject {
    Q_OBJECT

  public:
    enum class Pings { acknowledged, refused, ignored };
    struct Options {
        VideohubRouter::Setup router = {};
        /// CR LF in place of LF.
        bool crlf = false;
        /// Two clients of one machine hold locks of their own; the document's rule is one holder an address.
        bool locksByConnection = false;
        /// Bytes in a segment; 0 leaves it to the system.
        int splitEvery = 0;
        /// Milliseconds before each segment.
        int delay = 0;
        /// After its dump the server sends this many bytes without a line feed; negative for no end.
        qint64 endless = 0;
        Pings pings = Pings::acknowledged;
        /// Takes connections and says nothing, ever.
        bool mute = false;
    };

    explicit VideohubServer(Options options, QObject* parent = nullptr);
    ~VideohubServer() override;

    /// Port 0 takes a free one. False when the port is taken; see error().
    bool listen(quint16 port = 0, const QHostAddress& address = QHostAddress::LocalHost);
    QString error() const { return server_.errorString(); }
    quint16 port() const { return server_.serverPort(); }
    /// As when the router loses power: nobody is told more than that the connection ended.
    void stop();
    /// The router stands still with its connections open, as behind a pulled cable. Woken it takes what
    /// was sent to it meanwhile.
    void freeze(bool frozen);

    void setPresent(const std::string& value);
    /// To every client, as it is.
    void sendRaw(const QByteArray& bytes);

    const VideohubRouter& router() const { return router_; }
    int clientCount() const { return static_cast<int>(clients_.size()); }
    /// Blocks taken from clients since the start, pings among them.
    int requests() const { return requests_; }
    int pings() const { return pings_; }

  signals:
    /// One line for the person who watches.
    void said(const QString& what);

  private:
    class Client;
    /// A list of its own, since sending may cut one off.
    std::vector<QPointer<Client>> everyone() const;
    void accept();
    void remove(Client& client, const QString& why);
    void take(Client& client, const std::string& header, const std::vector<std::string>& lines);

    const Options options_;
    QTcpServer server_;
    VideohubRouter router_;
    std::vector<Client*> clients_;
    bool frozen_ = false;
    int accepted_ = 0, requests_ = 0, pings_ = 0;
};

} // namespace corvane::sim
