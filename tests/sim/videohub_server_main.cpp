// A Videohub on this machine, to try the program by hand: videohub-server --port 9990 --inputs 40 --outputs
// 40
#include "tests/sim/videohub_server.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTime>

#include <cstdio>
#include <map>

using corvane::sim::VideohubServer;

namespace {

constexpr int mostPorts = 1024;

void print(const QString& line) {
    std::printf("%s %s\n", qPrintable(QTime::currentTime().toString(QStringLiteral("HH:mm:ss.zzz"))),
                qPrintable(line));
    std::fflush(stdout);
}

/// The option's number; ends the program when it isn't one within the limits.
int numberOf(const QCommandLineParser& parser, const QString& option, int low, int high) {
    bool isNumber = false;
    const int value = parser.value(option).toInt(&isNumber);
    if (isNumber && value >= low && value <= high) return value;
    std::fprintf(stderr, "--%s takes a number from %d to %d\n", qPrintable(option), low, high);
    std::exit(EXIT_FAILURE);
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("A simulated Videohub router. What its clients do stands on "
                       "the standard output; Ctrl+C pulls its plug."));
    parser.addHelpOption();
    parser.addOptions({
        {QStringLiteral("address"), QStringLiteral("Listen there (default: this computer only)."),
         QStringLiteral("address"), QStringLiteral("127.0.0.1")},
        {QStringLiteral("port"), QStringLiteral("TCP port; 0 takes a free one."), QStringLiteral("n"),
         QStringLiteral("9990")},
        {QStringLiteral("inputs"), QStringLiteral("Video inputs."), QStringLiteral("n"),
         QStringLiteral("12")},
        {QStringLiteral("outputs"), QStringLiteral("Video outputs."), QStringLiteral("n"),
         QStringLiteral("12")},
        {QStringLiteral("model"), QStringLiteral("Model name."), QStringLiteral("name")},
        {QStringLiteral("present"), QStringLiteral("\"true\", \"false\" or \"needs_update\"."),
         QStringLiteral("value"), QStringLiteral("true")},
        {QStringLiteral("locks-by-connection"),
         QStringLiteral("Each connection holds its own locks, not each address.")},
        {QStringLiteral("crlf"), QStringLiteral("End lines with CR LF.")},
        {QStringLiteral("split"), QStringLiteral("Bytes in a segment; 0 for whatever the system does."),
         QStringLiteral("n"), QStringLiteral("0")},
        {QStringLiteral("delay"), QStringLiteral("Milliseconds before each segment."), QStringLiteral("n"),
         QStringLiteral("0")},
        {QStringLiteral("endless"), QStringLiteral("Send a line without an end after the dump.")},
        {QStringLiteral("pings"), QStringLiteral("What a ping gets: ack, nak or nothing."),
         QStringLiteral("answer"), QStringLiteral("ack")},
    });
    parser.process(application);

    VideohubServer::Options options;
    options.router.inputs = numberOf(parser, QStringLiteral("inputs"), 0, mostPorts);
    options.router.outputs = numberOf(parser, QStringLiteral("outputs"), 0, mostPorts);
    const auto model = parser.isSet(QStringLiteral("model")) ? parser.value(QStringLiteral("model"))
                                                             : QStringLiteral("Blackmagic Videohub %1x%2 12G")
                                                                   .arg(options.router.inputs)
                                                                   .arg(options.router.outputs);
    options.router.model = model.toStdString();
    options.router.present = parser.value(QStringLiteral("present")).toStdString();
    options.locksByConnection = parser.isSet(QStringLiteral("locks-by-connection"));
    options.crlf = parser.isSet(QStringLiteral("crlf"));
    options.splitEvery = numberOf(parser, QStringLiteral("split"), 0, 1 << 20);
    options.delay = numberOf(parser, QStringLiteral("delay"), 0, 60'000);
    options.endless = parser.isSet(QStringLiteral("endless")) ? -1 : 0;
    const std::map<QString, VideohubServer::Pings> answers = {
        {QStringLiteral("ack"), VideohubServer::Pings::acknowledged},
        {QStringLiteral("nak"), VideohubServer::Pings::refused},
        {QStringLiteral("nothing"), VideohubServer::Pings::ignored}};
    const auto answer = answers.find(parser.value(QStringLiteral("pings")));
    if (answer == answers.end()) {
        std::fputs("--pings takes ack, nak or nothing\n", stderr);
        return EXIT_FAILURE;
    }
    options.pings = answer->second;

    VideohubServer server(options);
    QObject::connect(&server, &VideohubServer::said, &application, print);
    const auto port = static_cast<quint16>(numberOf(parser, QStringLiteral("port"), 0, 65'535));
    if (!server.listen(port, QHostAddress(parser.value(QStringLiteral("address"))))) {
        std::fprintf(stderr, "port %d: %s\n", port, qPrintable(server.error()));
        return EXIT_FAILURE;
    }
    print(QStringLiteral("%1 on port %2").arg(model).arg(server.port()));
    return QCoreApplication::exec();
}
