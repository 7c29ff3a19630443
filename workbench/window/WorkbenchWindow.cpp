#include "WorkbenchWindow.h"

#include "BoardList.h"
#include "FlasherControl.h"
#include "FlasherList.h"
#include "HostSettings.h"
#include "LogCleanup.h"
#include "MessageLog.h"
#include "ModeViews.h"
#include "ModuleHost.h"
#include "ModulePages.h"
#include "PlaybackControl.h"
#include "SessionStatus.h"
#include "SettingsAutosave.h"
#include "ViewConnection.h"
#include "WorkbenchItems.h"

#include "host/CoreUserSettings.h"
#include "host/IPlayback.h"
#include "vrn_sim.h"

#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QTimer>

#include <algorithm>

// Resource initialisers live in the global namespace; the window's QML is
// in a static library, which the linker would otherwise leave out.
static void initialiseWindowResources()
{
    Q_INIT_RESOURCE(workbench_window);
}

namespace {

const QUrl kMainQml(QStringLiteral("qrc:/workbench/window/Main.qml"));
// The context properties of the modes' views, whose user messages the
// window shows; a mode's view joins here when its pages do.
constexpr const char* kViewNames[] = { ModeViews::kStandardView, "radarCWView", ModeViews::kDopplerView };
// How often boards are looked for when the SDK tells of no changes.
constexpr int kDevicePollMs = 2000;

// The chart items are registered once per process, whatever number of
// windows a test opens.
void registerItemsOnce(const QVector<QColor>& palette)
{
    static bool registered = false;
    if (registered)
        return;
    registered = true;
    initialiseWindowResources();
    registerWorkbenchItems(palette);
}

} // namespace

WorkbenchWindow::WorkbenchWindow(ModuleHost& host, LogFile* logFile, QObject* parent)
    : QObject(parent)
    , m_host(host)
    , m_logFile(logFile)
{
}

WorkbenchWindow::~WorkbenchWindow()
{
    // The window's QML binds to the objects below: it goes first.
    delete m_window.data();
}

QObject* WorkbenchWindow::view(const QString& name) const
{
    return ModeViews::view(m_host.engine(), name);
}

QList<QObject*> WorkbenchWindow::views() const
{
    QList<QObject*> found;
    for (const char* name : kViewNames) {
        if (QObject* modeView = view(QString::fromLatin1(name)))
            found.append(modeView);
    }
    return found;
}

QObject* WorkbenchWindow::activeView() const
{
    if (m_status && m_status->view())
        return m_status->view();
    return view(QString::fromLatin1(ModeViews::kStandardView));
}

void WorkbenchWindow::followSource(QObject* sourceView, const QString& uuid)
{
    QObject* before = activeView();
    if (sourceView)
        m_status->setView(sourceView);
    m_status->restart(uuid);
    if (activeView() != before)
        emit activeViewChanged();
}

QObject* WorkbenchWindow::coordinator() const
{
    QQmlEngine* engine = m_host.engine();
    return engine ? engine->rootContext()->contextProperty(QStringLiteral("radarCoordinator")).value<QObject*>()
                  : nullptr;
}

QObject* WorkbenchWindow::boards() const { return m_boards.get(); }
QObject* WorkbenchWindow::messages() const { return m_messages.get(); }
QObject* WorkbenchWindow::status() const { return m_status.get(); }
QObject* WorkbenchWindow::playback() const { return m_playback.get(); }
QObject* WorkbenchWindow::pages() const { return m_pages.get(); }
QObject* WorkbenchWindow::flashers() const { return m_flashers.get(); }
QObject* WorkbenchWindow::logs() const { return m_logs.get(); }
int WorkbenchWindow::minRefreshMs() const { return HostSettings::kMinRefreshMs; }
int WorkbenchWindow::maxRefreshMs() const { return HostSettings::kMaxRefreshMs; }
QString WorkbenchWindow::settingsPath() const { return m_host.settingsPath(); }

QObject* WorkbenchWindow::coreSettings() const
{
    return m_host.coreConfiguration().coreUserSettings();
}

QObject* WorkbenchWindow::recordingSettings() const
{
    return m_host.coreConfiguration().coreUserSettings()->recordingUserSettings();
}

QString WorkbenchWindow::open()
{
    QQmlEngine* engine = m_host.engine();
    if (!engine || !m_host.module())
        return QStringLiteral("The module is not running: there is nothing to show");
    QObject* radarView = view(QString::fromLatin1(ModeViews::kStandardView));
    QObject* radarCoordinator = coordinator();
    CoreUserSettings& core = *m_host.coreConfiguration().coreUserSettings();

    m_messages = std::make_unique<MessageLog>();
    bool messagesHeard = false;
    for (const char* name : kViewNames) {
        const QVariant property = engine->rootContext()->contextProperty(QString::fromLatin1(name));
        messagesHeard = m_messages->watchMessages(property.value<QObject*>()) || messagesHeard;
    }
    if (!messagesHeard)
        qWarning() << "No view of the module sends user messages; only the window's own are shown";
    m_messages->watchEvents(radarCoordinator);
    m_boards = std::make_unique<BoardList>(m_host.deviceRegister(), radarCoordinator, *m_messages);
    m_status = std::make_unique<SessionStatus>(radarView);
    for (const char* name : kViewNames) {
        if (auto* modeView = engine->rootContext()->contextProperty(QString::fromLatin1(name)).value<QObject*>())
            m_status->watchTemperature(modeView->property("deviceInfo").value<QObject*>());
    }
    if (const VrnSimControl* control = m_host.sdkLibrary().control()) {
        m_status->setDropCounter(
            [control](const QString& uuid) { return qint64(control->dropped_frames(uuid.toUtf8().constData())); });
    }
    RecordingUserSettings* recording = core.recordingUserSettings();
    m_status->setRecordingBase([recording] { return recording->basePath(); });
    m_playback = std::make_unique<PlaybackControl>(
        m_host.playbackRegister().playbacks(),
        [this](const IPlayback& playback) { return view(ModeViews::viewNameForPlayback(playback.name())); },
        *m_messages);
    m_pages = std::make_unique<ModulePages>();
    m_flashers = std::make_unique<FlasherControl>(m_host.flasherRegister(), *m_boards, *m_messages);
    connect(&m_flashers->flasherList(), &FlasherList::busyChanged, this, &WorkbenchWindow::closeWhenDone);
    m_logs = std::make_unique<LogCleanup>(m_host.hostSettings().logging(), m_logFile);

    // Each new source starts the status counts again, on its mode's view.
    connect(m_boards.get(), &BoardList::connectionChanged, this, [this](bool connected) {
        if (connected)
            followSource(view(ModeViews::viewNameForBoard(m_boards->connectedShieldType())),
                         m_boards->connectedUuid());
    });
    connect(m_playback.get(), &PlaybackControl::started, this,
            [this] { followSource(m_playback->view(), QString()); });
    // A text copy may still be written by any mode when the window closes.
    for (QObject* modeView : views())
        connectByName(modeView, "isParsingActiveChanged()", this, "onParsingActiveChanged()");

    m_autosave = std::make_unique<SettingsAutosave>([this] { return m_host.saveSettings(); });
    connect(&core, &CoreUserSettings::minimumRefreshIntervalChanged, m_autosave.get(),
            &SettingsAutosave::scheduleSave);
    m_autosave->watch(recording);
    m_autosave->watch(&m_host.hostSettings().logging());
    for (QObject* modeView : views())
        m_autosave->watch(modeView->property("userSettings").value<QObject*>());
    if (radarCoordinator)
        connectByName(radarCoordinator, "userModeChanged(QString)", m_autosave.get(), "scheduleSave()");
    connect(m_autosave.get(), &SettingsAutosave::saveFailed, this, [this] {
        m_messages->add(Constants::Warning, QStringLiteral("Settings cannot be saved"),
                        m_host.settingsError().isEmpty()
                            ? QStringLiteral("Writing %1 failed.").arg(m_host.settingsPath())
                            : m_host.settingsError()
                                  + QStringLiteral(" The file is left unchanged; fix or remove it to save again."));
    });
    if (!m_host.settingsError().isEmpty())
        m_messages->add(Constants::Warning, QStringLiteral("The settings file could not be read; using the defaults"),
                        m_host.settingsError());

    registerItemsOnce(core.palette());
    qRegisterMetaType<Logging*>("Logging*");
    // The module's pages ("import Radar 1.0") are embedded under qrc:/qml.
    engine->addImportPath(QStringLiteral("qrc:/qml"));
    engine->rootContext()->setContextProperty(QStringLiteral("workbench"), this);

    QQmlComponent component(engine, kMainQml);
    QObject* root = component.create();
    if (!root)
        return QStringLiteral("The window cannot be loaded: %1").arg(component.errorString().trimmed());
    m_window = qobject_cast<QQuickWindow*>(root);
    if (!m_window) {
        delete root;
        return QStringLiteral("The window's main file is not a window");
    }
    // Boards plugged before the window opened are listed at once.
    m_host.deviceChangeNotifier().notifyLater();
    // The simulator announces every plug and unplug; with another SDK the
    // host hears of none, so it asks the module to look again now and then.
    if (!m_host.sdkLibrary().control()) {
        auto* poll = new QTimer(this);
        connect(poll, &QTimer::timeout, &m_host.deviceChangeNotifier(), &HostDeviceChangeNotifier::notifyLater);
        poll->start(kDevicePollMs);
    }
    return {};
}

void WorkbenchWindow::setClosingReason(const QString& reason)
{
    if (reason == m_closingReason)
        return;
    m_closingReason = reason;
    emit closingReasonChanged();
}

bool WorkbenchWindow::finishSession()
{
    // The recording first: stopping it hands every frame it took to the
    // file before the source goes. Whichever mode records: the board may
    // have gone since it started.
    for (QObject* modeView : views()) {
        if (modeView->property("isRecordingActive").toBool()) {
            qInfo() << "Closing: stopping the recording";
            QMetaObject::invokeMethod(modeView, "stopRecording", Qt::DirectConnection);
        }
    }
    if (m_playback)
        m_playback->stop();
    if (m_boards && !m_boards->connectedBoard().isEmpty()) {
        qInfo() << "Closing: disconnecting" << m_boards->connectedBoard();
        m_boards->disconnectBoard();
    }
    // A board left half-written stays in its bootloader; the job ends
    // within the flasher's own time limit.
    if (isFlashing() && !m_leaveFlashing) {
        m_closeWhenDone = true;
        m_waitsForFlashing = true;
        setClosingReason(QStringLiteral("A baseboard is being flashed; the window closes when the job has ended. "
                                        "Closing now may leave the board in its bootloader."));
        return false;
    }
    m_waitsForFlashing = false;
    if (isParsing()) {
        m_closeWhenDone = true;
        setClosingReason(QStringLiteral("Writing the text copy of the recording; the window closes when it is done."));
        return false;
    }
    if (m_autosave && !m_autosave->saveNow(true))
        qWarning().noquote() << "The settings could not be saved to" << m_host.settingsPath();
    setClosingReason(QString());
    return true;
}

bool WorkbenchWindow::isParsing() const
{
    const QList<QObject*> all = views();
    return std::any_of(all.begin(), all.end(),
                       [](QObject* modeView) { return modeView->property("isParsingActive").toBool(); });
}

void WorkbenchWindow::abandonTextCopy()
{
    for (QObject* modeView : views()) {
        if (modeView->property("isParsingActive").toBool())
            QMetaObject::invokeMethod(modeView, "stopParsing", Qt::DirectConnection);
    }
}

void WorkbenchWindow::onParsingActiveChanged()
{
    closeWhenDone();
}

bool WorkbenchWindow::isFlashing() const
{
    return m_flashers && m_flashers->flasherList().busy();
}

void WorkbenchWindow::closeWhenDone()
{
    if (!m_closeWhenDone || isParsing() || (isFlashing() && !m_leaveFlashing))
        return;
    m_closeWhenDone = false;
    if (m_window)
        m_window->close();
}

void WorkbenchWindow::closeWithoutFlashing()
{
    qWarning() << "Closing while a baseboard is being flashed; it may stay in its bootloader";
    m_leaveFlashing = true;
    m_closeWhenDone = false;
    setClosingReason(QString());
    if (m_window)
        m_window->close();
}

void WorkbenchWindow::cancelClosing()
{
    m_closeWhenDone = false;
    m_waitsForFlashing = false;
    setClosingReason(QString());
}

QVariantList WorkbenchWindow::recordingDuration() const
{
    const RecordingUserSettings* recording = m_host.coreConfiguration().coreUserSettings()->recordingUserSettings();
    return { int(recording->hours()), int(recording->minutes()), int(recording->seconds()) };
}

void WorkbenchWindow::setRecordingDuration(int hours, int minutes, int seconds)
{
    RecordingUserSettings* recording = m_host.coreConfiguration().coreUserSettings()->recordingUserSettings();
    recording->setDuration(quint32(qBound(0, hours, 24 * 365)), quint32(qBound(0, minutes, 59)),
                           quint32(qBound(0, seconds, 59)), 0);
}
