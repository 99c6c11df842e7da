#include "agent_sim/FileHasher.h"

#include "agent_sim/TestString.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvale::sim {
namespace {

constexpr qint64 kPiece = qint64{1} << 20;

} // namespace

FileHasher::FileHasher() : m_testString(eicarTestString()) {}

bool FileHasher::open(const QString& path) {
    m_file.close();
    m_hash.reset();
    m_tail.clear();
    m_digest.clear();
    m_hasTestString = false;
    const int file =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0) {
        return false;
    }
    struct stat status {};
    if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode) ||
        !m_file.open(file, QIODevice::ReadOnly | QIODevice::Unbuffered,
                     QFileDevice::AutoCloseHandle)) {
        ::close(file);
        return false;
    }
    return true;
}

FileHasher::Step FileHasher::step() {
    const QByteArray piece = m_file.read(kPiece);
    if (piece.isEmpty()) {
        const bool failed = m_file.error() != QFileDevice::NoError;
        m_file.close();
        m_digest = QString::fromLatin1(m_hash.result().toHex());
        return failed ? Step::Failed : Step::Done;
    }
    m_hash.addData(piece);
    if (!m_hasTestString) {
        const QByteArray searched = m_tail + piece;
        m_hasTestString = m_testString.indexIn(searched) >= 0;
        m_tail = searched.right(m_testString.pattern().size() - 1);
    }
    return Step::More;
}

} // namespace korvale::sim
