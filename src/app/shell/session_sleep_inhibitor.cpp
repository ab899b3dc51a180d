#include "shell/session_sleep_inhibitor.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusUnixFileDescriptor>

namespace torvane::app {
namespace {

constexpr const char* ScreenSaverService = "org.freedesktop.ScreenSaver";
constexpr const char* ScreenSaverPath = "/org/freedesktop/ScreenSaver";
constexpr const char* LoginService = "org.freedesktop.login1";
constexpr const char* LoginPath = "/org/freedesktop/login1";
constexpr const char* LoginManager = "org.freedesktop.login1.Manager";

// The calls run on the interface thread, inside a step of the download: a session that does not
// answer soon must not hold the transfer up.
constexpr int CallTimeoutMs = 2000;

// Whether `service` runs on `bus` now. Asking only then keeps the bus from starting a service
// just to be told no.
bool Running(const QDBusConnection& bus, const char* service) {
    if (!bus.isConnected() || bus.interface() == nullptr) {
        return false;
    }
    const QDBusReply<bool> reply = bus.interface()->isServiceRegistered(service);
    return reply.isValid() && reply.value();
}

QDBusMessage Call(const QDBusConnection& bus, const QDBusMessage& message) {
    return bus.call(message, QDBus::Block, CallTimeoutMs);
}

} // namespace

SessionSleepInhibitor::SessionSleepInhibitor() = default;

SessionSleepInhibitor::~SessionSleepInhibitor() {
    Release();
}

void SessionSleepInhibitor::Inhibit(const QString& reason) {
    Release();
    const QString program = QCoreApplication::applicationName();

    const QDBusConnection session = QDBusConnection::sessionBus();
    if (Running(session, ScreenSaverService)) {
        QDBusMessage inhibit = QDBusMessage::createMethodCall(ScreenSaverService, ScreenSaverPath,
                                                              ScreenSaverService, "Inhibit");
        inhibit << program << reason;
        const QDBusReply<quint32> cookie = Call(session, inhibit);
        if (cookie.isValid()) {
            screenSaverCookie_ = cookie.value();
        }
    }

    const QDBusConnection system = QDBusConnection::systemBus();
    if (Running(system, LoginService)) {
        QDBusMessage inhibit =
            QDBusMessage::createMethodCall(LoginService, LoginPath, LoginManager, "Inhibit");
        inhibit << QString("idle") << program << reason << QString("block");
        const QDBusReply<QDBusUnixFileDescriptor> lock = Call(system, inhibit);
        if (lock.isValid()) {
            idleLock_ = std::make_unique<QDBusUnixFileDescriptor>(lock.value());
        }
    }
}

void SessionSleepInhibitor::Release() {
    if (screenSaverCookie_) {
        QDBusMessage release = QDBusMessage::createMethodCall(ScreenSaverService, ScreenSaverPath,
                                                              ScreenSaverService, "UnInhibit");
        release << *screenSaverCookie_;
        // Nothing waits for the answer: a session that has gone away has dropped the cookie.
        QDBusConnection::sessionBus().send(release);
        screenSaverCookie_.reset();
    }
    // Closing the descriptor ends logind's inhibitor.
    idleLock_.reset();
}

} // namespace torvane::app
