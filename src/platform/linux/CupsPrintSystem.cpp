#include "platform/linux/CupsPrintSystem.h"

#include "platform/Failure.h"
#include "platform/linux/CupsLibrary.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cups/cups.h>
#include <memory>

namespace rv52 {

namespace {

using Clock = std::chrono::steady_clock;

// With the seconds that the library waits on its own account, this comes to five at most.
constexpr std::chrono::milliseconds kPatience{3500};
constexpr std::chrono::milliseconds kConnectTry{500};  // window events are served between two
constexpr double kWaitSeconds = 0.05;                  // window events are served between two waits
constexpr double kPerPoint = 2540.0 / 72;              // hundredths of a millimetre
constexpr const char* kSilent = "The print system does not answer.";

void ServeWindows() {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

bool Succeeded(ipp_status_t status) {
    return status >= IPP_STATUS_OK && status < IPP_STATUS_REDIRECTION_OTHER_SITE;
}

// One conversation with the spooler, with one deadline for all of it.
class Conversation {
 public:
    Conversation() {
        // Who does not answer is tried again; who cannot be there says so at once.
        for (bool again = true; again; ServeWindows()) {
            const auto start = Clock::now();
            http_.reset(Cups().httpConnect2(Cups().cupsServer(), Cups().ippPort(), nullptr, AF_UNSPEC,
                                            Cups().cupsEncryption(), 1, static_cast<int>(kConnectTry.count()),
                                            nullptr));
            silent_ = !http_ && Clock::now() - start >= kConnectTry;
            again = silent_ && !Late();
        }
        if (http_) Cups().httpSetTimeout(http_.get(), kWaitSeconds, &Conversation::GoOn, this);
    }
    ~Conversation() { Cups().cupsFreeDests(count_, dests_); }
    Conversation(const Conversation&) = delete;
    Conversation& operator=(const Conversation&) = delete;

    http_t* Http() { return http_.get(); }
    bool Late() const { return Clock::now() >= deadline_; }

    // False where no spooler runs.
    bool ReadQueues() {
        if (silent_) throw Failure(kSilent);
        if (!http_) return false;
        count_ = Cups().cupsGetDests2(Http(), &dests_);
        if (Late()) throw Failure(kSilent);
        return true;
    }
    template <class Look>
    void ForEachQueue(Look&& look) const {
        for (int i = 0; i < count_; ++i)
            look(dests_[i]);
    }
    cups_dest_t& Queue(const std::string& name) {
        if (!ReadQueues()) throw Failure(kSilent);
        const auto slash = name.find('/');
        const auto instance = slash == std::string::npos ? std::string() : name.substr(slash + 1);
        auto* found = Cups().cupsGetDest(name.substr(0, slash).c_str(),
                                         instance.empty() ? nullptr : instance.c_str(), count_, dests_);
        if (found == nullptr) throw Failure("The printer \"" + name + "\" is not there.");
        return *found;
    }
    // What the last answer, or its lack, comes to.
    Failure Refusal(const std::string& queue) const {
        if (Late()) return Failure(kSilent);
        return Failure("The printer \"" + queue +
                       "\" does not take the page: " + Cups().cupsLastErrorString());
    }

 private:
    struct Close {
        void operator()(http_t* http) const { Cups().httpClose(http); }
    };

    // The library's question whether to wait on.
    static int GoOn(http_t*, void* conversation) {
        ServeWindows();
        return static_cast<Conversation*>(conversation)->Late() ? 0 : 1;
    }

    const Clock::time_point deadline_ = Clock::now() + kPatience;
    bool silent_ = false;  // someone listens, and does not answer
    std::unique_ptr<http_t, Close> http_;
    cups_dest_t* dests_ = nullptr;
    int count_ = 0;
};

struct FreeInfo {
    void operator()(cups_dinfo_t* info) const { Cups().cupsFreeDestInfo(info); }
};
using QueueInfo = std::unique_ptr<cups_dinfo_t, FreeInfo>;

QueueInfo InfoOf(Conversation& spooler, cups_dest_t& queue) {
    QueueInfo info(Cups().cupsCopyDestInfo(spooler.Http(), &queue));
    if (!info) throw spooler.Refusal(queue.name);
    return info;
}

PrintPaper PaperOf(const cups_size_t& size) {
    const auto points = [](int hundredths) { return hundredths / kPerPoint; };
    return {points(size.width), points(size.length), points(size.left),
            points(size.top),   points(size.right),  points(size.bottom)};
}

// A paper is listed once, as first told: that is the one without special margins.
void AddPaper(std::vector<PrintPaper>& papers, const cups_size_t& size) {
    const auto paper = PaperOf(size);
    if (paper.width > paper.height || std::string(size.media).starts_with("custom_m")) return;
    if (std::ranges::none_of(papers, [&](const auto& other) { return SameSize(paper, other); }))
        papers.push_back(paper);
}

int IntegerIn(ipp_t* collection, const char* name) {
    return Cups().ippGetInteger(Cups().ippFindAttribute(collection, name, IPP_TAG_ZERO), 0);
}

// The user's own default, else the printer's, which the library's function for defaults does not ask for.
bool ReadUsualPaper(Conversation& spooler, cups_dest_t& queue, cups_dinfo_t* info, cups_size_t& size) {
    auto* http = spooler.Http();
    if (const char* own = Cups().cupsGetOption(CUPS_MEDIA, queue.num_options, queue.options))
        return Cups().cupsGetDestMediaByName(http, &queue, info, own, CUPS_MEDIA_FLAGS_DEFAULT, &size) != 0;
    auto* usual = Cups().cupsFindDestDefault(http, &queue, info, "media-col");
    if (usual == nullptr) return false;
    auto* dimensions =
        Cups().ippFindAttribute(Cups().ippGetCollection(usual, 0), "media-size", IPP_TAG_BEGIN_COLLECTION);
    if (dimensions == nullptr) return false;
    auto* both = Cups().ippGetCollection(dimensions, 0);
    return Cups().cupsGetDestMediaBySize(http, &queue, info, IntegerIn(both, "x-dimension"),
                                         IntegerIn(both, "y-dimension"), CUPS_MEDIA_FLAGS_DEFAULT,
                                         &size) != 0;
}

// Where the library has no name in the user's language it gives the key: "tray-1".
std::string Readable(std::string name) {
    std::ranges::replace(name, '-', ' ');
    if (name[0] >= 'a' && name[0] <= 'z') name[0] = static_cast<char>(name[0] - 'a' + 'A');
    return name;
}

std::vector<PaperTray> TraysOf(Conversation& spooler, cups_dest_t& queue, cups_dinfo_t* info) {
    std::vector<PaperTray> trays;
    auto* sources = Cups().cupsFindDestSupported(spooler.Http(), &queue, info, CUPS_MEDIA_SOURCE);
    for (int i = 0; sources != nullptr && i < Cups().ippGetCount(sources); ++i) {
        const char* key = Cups().ippGetString(sources, i, nullptr);
        if (key == nullptr || std::string(key) == CUPS_MEDIA_SOURCE_AUTO) continue;
        const char* name = Cups().cupsLocalizeDestValue(spooler.Http(), &queue, info, CUPS_MEDIA_SOURCE, key);
        trays.push_back({key, Readable(name != nullptr ? name : key)});
    }
    return trays;
}

// What a job says of itself.
class JobOptions {
 public:
    explicit JobOptions(const PrintOrder& order) {
        const auto hundredths = [](double points) { return std::to_string(std::lround(points * kPerPoint)); };
        auto media = "{media-size={x-dimension=" + hundredths(order.paper.width) +
                     " y-dimension=" + hundredths(order.paper.height) + "}";
        if (!order.tray.empty()) media += " media-source=" + order.tray;
        count = Cups().cupsAddOption("media-col", (media + "}").c_str(), count, &all);
    }
    ~JobOptions() { Cups().cupsFreeOptions(count, all); }
    JobOptions(const JobOptions&) = delete;
    JobOptions& operator=(const JobOptions&) = delete;

    int count = 0;
    cups_option_t* all = nullptr;
};

bool SendDocument(http_t* http, cups_dest_t& queue, cups_dinfo_t* info, int job, const std::string& title,
                  const std::string& document) {
    if (Cups().cupsStartDestDocument(http, &queue, info, job, title.c_str(), CUPS_FORMAT_PDF, 0, nullptr,
                                     1) != HTTP_STATUS_CONTINUE)
        return false;
    if (Cups().cupsWriteRequestData(http, document.data(), document.size()) != HTTP_STATUS_CONTINUE)
        return false;
    return Succeeded(Cups().cupsFinishDestDocument(http, &queue, info));
}

}  // namespace

std::vector<PrintQueue> CupsPrintSystem::Queues() {
    Conversation spooler;
    spooler.ReadQueues();
    std::vector<PrintQueue> queues;
    spooler.ForEachQueue([&](const cups_dest_t& queue) {
        const std::string instance = queue.instance != nullptr ? std::string("/") + queue.instance : "";
        queues.push_back({queue.name + instance, queue.is_default != 0});
    });
    return queues;
}

PrintMedia CupsPrintSystem::Media(const std::string& name) {
    Conversation spooler;
    auto& queue = spooler.Queue(name);
    const auto info = InfoOf(spooler, queue);
    auto* http = spooler.Http();
    PrintMedia media;
    cups_size_t size{};
    // The usual one comes first.
    if (ReadUsualPaper(spooler, queue, info.get(), size)) AddPaper(media.papers, size);
    const int count = Cups().cupsGetDestMediaCount(http, &queue, info.get(), CUPS_MEDIA_FLAGS_DEFAULT);
    for (int i = 0; i < count; ++i)
        if (Cups().cupsGetDestMediaByIndex(http, &queue, info.get(), i, CUPS_MEDIA_FLAGS_DEFAULT, &size) != 0)
            AddPaper(media.papers, size);
    media.trays = TraysOf(spooler, queue, info.get());
    if (spooler.Late()) throw Failure(kSilent);
    return media;
}

void CupsPrintSystem::Send(const PrintOrder& order, const std::string& document) {
    Conversation spooler;
    auto& queue = spooler.Queue(order.queue);
    const auto info = InfoOf(spooler, queue);
    const JobOptions options(order);
    int job = 0;
    const auto created = Cups().cupsCreateDestJob(spooler.Http(), &queue, info.get(), &job,
                                                  order.title.c_str(), options.count, options.all);
    if (!Succeeded(created)) throw spooler.Refusal(order.queue);
    if (SendDocument(spooler.Http(), queue, info.get(), job, order.title, document)) return;
    const auto refusal = spooler.Refusal(order.queue);
    if (!spooler.Late()) Cups().cupsCancelDestJob(spooler.Http(), &queue, job);
    throw refusal;
}

}  // namespace rv52
