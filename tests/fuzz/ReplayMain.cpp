// Runs every file of the folders given through the target's entry point,
// as libFuzzer would replay them. A fault that comes back crashes here,
// under the ordinary build and its sanitizers when they are on. A seed
// folder that holds nothing fails: a corpus that vanished tests nothing.
#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    int replayed = 0;
    for (int i = 1; i < argc; ++i) {
        const QDir dir(QString::fromLocal8Bit(argv[i]));
        const QStringList names = dir.entryList(QDir::Files, QDir::Name);
        if (i == 1 && names.isEmpty()) {
            std::fprintf(stderr, "No seed inputs in %s\n", argv[i]);
            return 1;
        }
        for (const QString& name : names) {
            QFile file(dir.filePath(name));
            if (!file.open(QIODevice::ReadOnly)) {
                std::fprintf(stderr, "Cannot read %s\n", qPrintable(file.fileName()));
                return 1;
            }
            const QByteArray bytes = file.readAll();
            LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.constData()), size_t(bytes.size()));
            ++replayed;
        }
    }
    std::printf("Replayed %d inputs\n", replayed);
    return 0;
}
