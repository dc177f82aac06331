// SPDX-License-Identifier: Apache-2.0
#include "desktop/script/script_runner.h"

#include "platform/one_line.h"

namespace {

using Kind = ScriptStep::Kind;

constexpr int expressionRetryMs = 50;
constexpr int staleValueMs = 1000;
constexpr int mostLastLines = 40;
const char valueWords[] = "value: ";

/** Whether what was printed before this step can no longer be what is expected after it. */
bool actsOnBox(Kind kind)
{
    return kind == Kind::Command || kind == Kind::Key || kind == Kind::Reload;
}

bool hasLimit(Kind kind)
{
    return kind != Kind::Command && kind != Kind::WaitTime && kind != Kind::Stay;
}

} // namespace

ScriptRunner::ScriptRunner(const ParsedScript &script, BoxControl &control, QObject *parent)
    : QObject(parent)
    , m_script(script)
    , m_control(control)
{
    m_limit.setSingleShot(true);
    m_limit.setTimerType(Qt::PreciseTimer);
    m_pause.setSingleShot(true);
    connect(&m_limit, &QTimer::timeout, this, &ScriptRunner::giveUpWaiting);
    connect(&m_pause, &QTimer::timeout, this, &ScriptRunner::evaluate);
}

void ScriptRunner::start()
{
    m_isRunning = true;
    runOn();
}

void ScriptRunner::runOn()
{
    // A step that ends at once comes back here from within begin().
    if (m_isRunningOn)
        return;
    m_isRunningOn = true;
    while (m_isRunning && !m_isStepOpen) {
        if (m_next == m_script.steps.size())
            finish();
        else
            begin();
    }
    m_isRunningOn = false;
}

void ScriptRunner::begin()
{
    m_isStepOpen = true;
    m_clock.start();
    const ScriptStep &current = step();
    if (actsOnBox(current.kind))
        m_printed.forget();
    if (hasLimit(current.kind))
        m_limit.start(current.ms);
    switch (current.kind) {
    case Kind::Command: runCommand(); break;
    case Kind::WaitTime: m_limit.start(current.ms); break;
    case Kind::WaitForText: break;
    case Kind::Expect:
        if (m_printed.take(current.pattern))
            pass();
        break;
    case Kind::ExpectEval:
    case Kind::Eval: evaluate(); break;
    case Kind::Key: pressKey(current.times); break;
    case Kind::Screenshot: endBy(m_control.savePicture(current.text)); break;
    case Kind::Reload: reload(); break;
    case Kind::Stay:
        m_stays = true;
        pass();
        finish();
        break;
    }
}

void ScriptRunner::runCommand()
{
    const ConsoleCommand command = step().command;
    // What it prints is there when the next step looks for it.
    pass();
    if (command.action == ConsoleCommand::Action::Quit)
        finish();
    else
        emit commandReached(command);
}

BoxControl::Done ScriptRunner::forThisStep(const std::function<void(const BoxAnswer &)> &use)
{
    const int number = m_next;
    return [this, number, use](const BoxAnswer &answer) {
        if (m_isStepOpen && m_next == number)
            use(answer);
    };
}

void ScriptRunner::reload()
{
    const ConsoleCommand command = step().command;
    m_control.reload([this, command] { emit commandReached(command); },
                     forThisStep([this](const BoxAnswer &answer) { endBy(answer); }));
}

void ScriptRunner::pressKey(int times)
{
    m_control.pressKey(step().text, forThisStep([this, times](const BoxAnswer &answer) {
                           if (answer.failure.isEmpty() && times > 1)
                               pressKey(times - 1);
                           else
                               endBy(answer);
                       }));
}

void ScriptRunner::evaluate()
{
    const bool isOnce = step().kind == Kind::Eval;
    m_control.evaluate(step().text, forThisStep([this, isOnce](const BoxAnswer &answer) {
                           if (isOnce)
                               noteValue(answer);
                           else
                               retryExpression(answer);
                       }));
}

void ScriptRunner::noteValue(const BoxAnswer &answer)
{
    if (answer.failure.isEmpty()) {
        m_printed.forget(LinePattern(valueWords));
        emit message(valueWords + oneLine(answer.value));
    }
    endBy(answer);
}

void ScriptRunner::retryExpression(const BoxAnswer &answer)
{
    if (answer.failure.isEmpty() && answer.isTrue) {
        pass();
        return;
    }
    m_lastValue = answer.failure.isEmpty() ? "it is " + oneLine(answer.value) : answer.failure;
    m_valueAge.start();
    m_pause.start(expressionRetryMs);
}

void ScriptRunner::notePrinted(const QString &printed)
{
    const QStringList lines = printed.split('\n');
    m_lastLines += lines;
    while (m_lastLines.size() > mostLastLines)
        m_lastLines.removeFirst();
    m_printed.note(printed);
    if (!m_isStepOpen)
        return;
    bool isMet = false;
    if (step().kind == Kind::Expect)
        isMet = m_printed.take(step().pattern);
    for (const QString &line : lines)
        isMet = isMet || (step().kind == Kind::WaitForText && step().pattern.matches(line));
    if (!isMet)
        return;
    // Whoever prints is in the middle of something.
    m_limit.stop();
    const int number = m_next;
    QTimer::singleShot(0, this, [this, number] {
        if (m_isStepOpen && m_next == number)
            pass();
    });
}

void ScriptRunner::endBy(const BoxAnswer &answer) { end(answer.failure); }

void ScriptRunner::end(const QString &failure)
{
    StepResult result;
    result.step = m_next;
    result.ms = m_clock.elapsed();
    result.failure = failure;
    if (!failure.isEmpty())
        result.output = m_lastLines;
    m_result.steps += result;
    m_limit.stop();
    m_pause.stop();
    m_lastValue.clear();
    m_isStepOpen = false;
    ++m_next;
    if (failure.isEmpty())
        runOn();
    else
        finish();
}

void ScriptRunner::giveUpWaiting()
{
    if (step().kind == Kind::WaitTime) {
        pass();
        return;
    }
    const QString failure = limitFailure();
    m_control.giveUp();
    end(failure);
}

QString ScriptRunner::limitFailure() const
{
    const QString time = QString("within %1 s").arg(step().ms / 1000.0);
    QString reason = m_control.obstacle();
    switch (step().kind) {
    case Kind::Expect:
    case Kind::WaitForText: return "not printed " + time;
    case Kind::ExpectEval:
        // Of a page that hangs since the last value is not what matters.
        if (!m_lastValue.isEmpty() && m_valueAge.elapsed() < staleValueMs)
            reason = m_lastValue;
        return QString("did not become true %1: %2").arg(time, reason);
    default: break;
    }
    return QString("not done %1%2").arg(time, reason.isEmpty() ? "" : ": " + reason);
}

void ScriptRunner::abort(const QString &reason)
{
    if (!m_isRunning)
        return;
    m_control.giveUp();
    if (m_next < m_script.steps.size())
        end(reason);
    else
        finish();
}

void ScriptRunner::finish()
{
    m_isRunning = false;
    emit finished();
}
