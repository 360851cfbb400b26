#include "faults/DeedTrial.h"

#include "faults/FaultyDisk.h"
#include "faults/PowerCut.h"
#include "records/Failure.h"

#include <algorithm>

namespace quire::testing {

namespace {

bool isOfAnOpenLibrary(const Deed &deed)
{
    return deed.kind == Deed::Kind::Edit || deed.kind == Deed::Kind::Work;
}

// An edit leads from one content to another, a refusal nowhere. Anything else also
// rests in between: what a crash right after one of its commits shows.
std::vector<LibraryContent> restsOf(const Deed &deed, FaultBench &bench)
{
    bench.reset(deed.start);
    std::vector<LibraryContent> rests{bench.content()};
    if (deed.kind == Deed::Kind::Edit) {
        bench.open();
        deed.run(bench.store());
        bench.close();
        rests.push_back(bench.content());
        return rests;
    }
    if (deed.kind == Deed::Kind::Refusal) {
        deed.run(bench.store());
        return rests;
    }
    FaultyDisk::instance().beginRecord();
    if (isOfAnOpenLibrary(deed)) {
        bench.open();
    }
    deed.run(bench.store());
    bench.close();
    const PowerCut record(FaultyDisk::instance().takeRecord());
    for (int moment = 0; moment <= record.moments(); ++moment) {
        bench.reset(record.afterCrash(moment));
        if (auto content = bench.content(); std::find(rests.begin(), rests.end(), content) == rests.end()) {
            rests.push_back(std::move(content));
        }
    }
    return rests;
}

} // namespace

DeedTrial::DeedTrial(const Deed &deed, FaultBench &bench)
    : m_deed(deed)
    , m_bench(bench)
    , m_rests(restsOf(deed, bench))
{
}

bool DeedTrial::run(
    const std::function<void()> &hinder, const std::function<void()> &free, const std::function<QString()> &where)
{
    m_bench.reset(m_deed.start);
    if (isOfAnOpenLibrary(m_deed)) {
        m_bench.open();
    }
    QStringList findings;
    hinder();
    const bool done = isDone(findings);
    free();
    look(done, findings);
    if (!isOfAnOpenLibrary(m_deed)) {
        m_bench.close(); // it may have been opened for reading only
    }
    findings += m_deed.aftermath ? m_deed.aftermath(m_bench) : m_bench.findingsOfFurtherWork();
    for (const QString &finding : findings) {
        m_findings.append(
            QStringLiteral("%1, %2, %3: %4")
                .arg(QLatin1String(m_deed.name), QLatin1String(nameOf(m_bench.place())), where(), finding));
    }
    return done;
}

bool DeedTrial::isDone(QStringList &findings)
{
    try {
        m_deed.run(m_bench.store());
        return true;
    } catch (const Failure &) {
        return false;
    } catch (const std::exception &other) {
        findings.append(QStringLiteral("a failure without a type: ") + QString::fromUtf8(other.what()));
        return false;
    }
}

void DeedTrial::look(bool isDone, QStringList &findings)
{
    try {
        const LibraryContent content = m_bench.content();
        if (isDone && content != m_rests.back()) {
            findings.append(QStringLiteral("told to be done, but ") + content.difference(m_rests.back()));
        } else if (!isRest(content)) {
            findings.append(QStringLiteral("between: ") + content.difference(m_rests.front()));
        }
    } catch (const Failure &failure) {
        findings.append(QStringLiteral("unreadable afterwards: ") + failure.description());
    }
}

// A secret may be in its file before the deed is done: two files cannot change at
// once. Never the other way round, which could lose it.
bool DeedTrial::isRest(const LibraryContent &content) const
{
    return std::any_of(m_rests.begin(), m_rests.end(), [&](const LibraryContent &rest) {
        LibraryContent withSecret = rest;
        withSecret.secrets = m_rests.back().secrets;
        return content == rest || content == withSecret;
    });
}

} // namespace quire::testing
