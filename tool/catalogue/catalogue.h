#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tool/catalogue/database.h"
#include "tool/catalogue/id_set.h"
#include "tool/catalogue/rows.h"
#include "tool/catalogue/tag_source.h"
#include "tool/path_list.h"

namespace tool {

/// What a scan tells of itself.
struct ScanFacts {
    std::string version;  ///< of the tool
    std::string folder;   ///< in which it was started
    std::uint64_t maxValues = 0;
    std::optional<std::uint64_t> headerOffset;  ///< that was asked for
};

/// What became of the files of a scan.
struct ScanCounts {
    std::uint64_t found = 0;  ///< each once
    std::uint64_t written = 0;
    std::uint64_t unchanged = 0;  ///< as an earlier scan has left them
    std::uint64_t repeated = 0;   ///< how often one of them was found again
    std::uint64_t removed = 0;    ///< rows of files that are gone
};

/// What became of the files that are gone.
struct Pruning {
    std::uint64_t removed = 0;
    std::vector<std::string> refused;  ///< folders that have lost all of their files
};

/// The catalogue of many files in a SQLite database. What was committed stays whatever becomes of
/// the process, and a file is in it whole or not at all. One thread writes, others may look files
/// up in the meantime. All functions raise DatabaseError.
class Catalogue {
  public:
    /// Opens or makes it. Refuses what is no catalogue, or that of a later version.
    explicit Catalogue(const std::string& path);

    /// What an earlier scan, or this one, has left of a file.
    enum class State {
        Unknown,
        Changed,    ///< to be read again
        Unchanged,  ///< counted as that
        Repeated,   ///< counted before in this scan
    };
    /// By its absolute path. A file without a stamp has changed, and with `readsAll` each one.
    /// Answers at once while the catalogue is new.
    [[nodiscard]] State find(const std::string& path, const std::optional<FileStamp>& stamp,
                             bool readsAll);

    void beginScan(const ScanFacts& facts);
    /// Writes rows of a file, and commits from time to time. A file that is there is written anew,
    /// unless this scan has written it.
    void write(const RowBlock& block);
    void commit();
    /// Raises DatabaseError when not every file that was written or is unchanged has its row. To be
    /// called before rows are taken out: a file may have gone since it was read.
    void checkRows();
    /// Whether it has files below a folder, or with this path.
    [[nodiscard]] bool hasBelow(const std::string& root);
    /// Takes out the files below folders, or with these paths, that are there no more. A folder
    /// that has lost all of them may be a disk that is not mounted: then they stay, unless that is
    /// forced. What this scan has written stays as long as its name is there.
    Pruning removeGone(std::span<const std::string> roots, bool isForced);
    /// Makes the indexes and notes the end.
    void finishScan(const ScanCounts& counts);

    /// Whether rows of this scan are safe.
    [[nodiscard]] bool hasCommitted() const noexcept { return hasCommitted_; }
    [[nodiscard]] std::uint64_t written() const noexcept { return written_; }
    [[nodiscard]] std::uint64_t unchanged() const noexcept { return unchanged_; }
    /// How many of the unchanged files were read by a scan with other options.
    [[nodiscard]] std::uint64_t readOtherwise() const noexcept { return readOtherwise_; }
    /// How often a file was found again.
    [[nodiscard]] std::uint64_t repeated() const noexcept { return repeated_; }
    /// How many of the files that were written have this status.
    [[nodiscard]] std::uint64_t writtenWith(std::string_view status) const;

  private:
    static constexpr std::uint64_t filesInTransaction = 2000;
    static constexpr std::string_view unreadable = "unreadable";  ///< a status

    void open();
    /// Takes the journal into the database, which then can be searched where nothing may be
    /// written.
    void leaveOneFile();
    void begin();
    void writeFile(const FileRow& row);
    /// Inserts the row. False when there is one with this path.
    bool insertFile(const FileRow& row, std::optional<std::int64_t> id);
    void writeDirectory(const DirectoryRow& row);
    void writeTags(const RowBlock& block);
    void writeFinding(const FindingRow& row);
    void removeRows(std::int64_t file);
    void removeAll(std::span<const std::int64_t> files);

    struct Statements {
        explicit Statements(Database& database);
        Statement find;
        Statement owner;
        Statement insertFile;
        Statement insertDirectory;
        Statement insertTags;
        Statement insertFinding;
        Statement deleteTags;
        Statement deleteDirectories;
        Statement deleteFindings;
        Statement deleteFile;
    };

    std::mutex mutex_;
    std::optional<TagSource> tagSource_;  // until the database is closed
    Database database_;
    std::optional<Statements> statements_;
    bool isNew_ = false;  ///< no file was in it when it was opened
    std::int64_t scan_ = 0;
    std::int64_t file_ = 0;            ///< that is being written
    std::int64_t firstDirectory_ = 0;  ///< of that file
    std::int64_t nextDirectory_ = 0;
    std::int64_t nextFinding_ = 0;
    bool isSkipping_ = false;  ///< the blocks are of a file that this scan has written
    bool hasCommitted_ = false;
    std::uint64_t pendingFiles_ = 0;
    std::uint64_t pendingRows_ = 0;
    std::uint64_t written_ = 0;
    std::uint64_t unchanged_ = 0;
    std::uint64_t readOtherwise_ = 0;
    std::uint64_t repeated_ = 0;
    IdSet scansWithOtherOptions_;
    IdSet unchangedFiles_;
    std::map<std::string, std::uint64_t, std::less<>> byStatus_;  ///< files that were written
};

}  // namespace tool
