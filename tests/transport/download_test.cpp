// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "transport/download.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "async/wait.h"
#include "core/files.h"
#include "test_main.h"
#include "transport/curl_transfer.h"
#include "transport/download_text.h"
#include "transport/scripted_server.h"

namespace quayline {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using testing::Answer;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::ReadBytes;
using testing::RedirectTo;
using testing::Reply;
using testing::RunTask;
using testing::RunUntil;
using testing::ScriptedServer;
using testing::WriteBytes;
using Then = Reply::Then;

TEST(DownloadText, RatesAndTimesKeepTheirGaps) {
  const std::pair<double, const char*> rates[] = {
      {0, "0 Bytes/s"},       {1022.4, "1022 Bytes/s"},    {1023, "0.00 MB/s"},
      {1024, "1.00 KB/s"},    {1536, "1.50 KB/s"},         {1048575, "1024.00 KB/s"},
      {1048576, "1.00 MB/s"}, {2.5 * 1048576, "2.50 MB/s"}};
  for (const auto& [rate, text] : rates) {
    EXPECT_EQ(RateText(rate), QLatin1String(text)) << rate;
  }
  const std::pair<double, const char*> times[] = {
      {0, "0 sec"},         {58.4, "58 sec"},      {59.5, "0 hr 1 min"},
      {60, "1 min 0 sec"},  {90, "2 min 30 sec"},  {3598, "60 min 58 sec"},
      {3599, "1 hr 0 min"}, {5400, "2 hr 30 min"}, {-3, "-3 sec"}};
  for (const auto& [time, text] : times) {
    EXPECT_EQ(TimeText(time), QLatin1String(text)) << time;
  }
}

TEST(DownloadText, TheExtensionOfTheAddressIsTakenWhereBothHaveOne) {
  const char* cases[][3] = {{"http://a/b.zip", "/tmp/x.tmp", "/tmp/x.zip"},
                            {"http://a/b.html", "/tmp/x.c", "/tmp/x.html"},
                            {"http://a/b.torrent", "/tmp/x.tmp", "/tmp/x.tmp"},
                            {"http://a.b/c", "/tmp/x.tmp", "/tmp/x.tmp"},
                            {"http://a/b.zip", "/tmp/without", "/tmp/without"}};
  for (const auto& [address, path, expected] : cases) {
    EXPECT_EQ(WithExtensionOf(QLatin1String(address), QLatin1String(path)), QLatin1String(expected))
        << address;
  }
}

// Answers from what the test wrote down.
class FakeTransfer final : public HttpTransfer {
 public:
  QByteArray status = "HTTP/1.1 200 OK";
  QByteArray length;
  QByteArrayList chunks;
  bool is_executing = false;  // the headers do not come
  QByteArray sent;            // extra headers
  int cancelled = 0;

  void SetUrl(const QUrl&) override {}
  void Execute(const QByteArray& extra_headers) override { sent = extra_headers; }
  bool StillExecuting() const override { return is_executing; }
  std::expected<QByteArray, TransferError> GetHeader(const QByteArray& name) const override {
    return name.isEmpty() ? status : length;
  }
  Task<std::expected<QByteArray, TransferError>> GetChunk(qsizetype) override {
    co_await Sleep(0ms);
    co_return chunks.isEmpty() ? QByteArray() : chunks.takeFirst();
  }
  void Cancel() override { ++cancelled; }
};

// Writes down the signals of a download; rates and times, which differ, by their name only.
void Record(Download& download, std::vector<std::string>& events) {
  const auto text = [&events](const char* name) {
    return [&events, name](const QString& value) {
      events.push_back(std::string(name) + ": " + value.toStdString());
    };
  };
  const auto number = [&events](const char* name) {
    return [&events, name](int value) {
      events.push_back(std::string(name) + ": " + std::to_string(value));
    };
  };
  using D = Download;
  QObject::connect(&download, &D::DLComplete, &download, [&] { events.push_back("complete"); });
  QObject::connect(&download, &D::DLError, &download, text("error"));
  QObject::connect(&download, &D::DLECode, &download, number("code"));
  QObject::connect(&download, &D::RecievedBytes, &download, number("bytes"));
  QObject::connect(&download, &D::Percent, &download, number("percent"));
  QObject::connect(&download, &D::Status, &download, text("status"));
  QObject::connect(&download, &D::Rate, &download, [&] { events.push_back("rate"); });
  QObject::connect(&download, &D::TimeLeft, &download, [&] { events.push_back("time"); });
  QObject::connect(&download, &D::ConnectionState, &download, text("link"));
}

class DownloadTest : public ::testing::Test {
 protected:
  DownloadTest() {
    auto transfer = std::make_unique<FakeTransfer>();
    transfer_ = transfer.get();
    download_ = std::make_unique<Download>(std::move(transfer), [this] { return links_; });
    download_->options.URL = u"http://site/file"_s;
    download_->options.SaveLocation = path_;
    Record(*download_, events_);
  }

  std::vector<std::string> Probe() { return Run(download_->GetFileInformation()); }
  std::vector<std::string> Run(Task<> task) {
    events_.clear();
    EXPECT_TRUE(RunTask(std::move(task), 10s));
    return events_;
  }

  QTemporaryDir folder_;
  QString path_ = folder_.filePath(u"file"_s);
  Links links_;
  FakeTransfer* transfer_;
  std::unique_ptr<Download> download_;
  std::vector<std::string> events_;
};

TEST_F(DownloadTest, TheHeadersDecideByTheirPlaces) {
  const struct {
    const char* status;
    const char* length;
    std::vector<std::string> last;  // signals, after the two of every request
    bool exists, resumes;
    int size;
  } cases[] = {
      {"HTTP/1.1 200 OK", "7", {"status: Retrieving File Information Complete!"}, true, true, 7},
      {"HTTP/1.0 500 No", "7", {"status: Retrieving File Information Complete!"}, true, false, 7},
      {"HTTP/1.1 200 OK", "", {"status: Retrieving File Information Complete!"}, true, true, 0},
      {"HTTP/1.1 401 x",
       "7",
       {"status: Unauthorized Access, Download Terminated!", "code: 401",
        "error: Unauthorized Access!"},
       true,
       false,
       0},
      {"HTTP/1.1 403 x",
       "7",
       {"status: Access Denied, Download Terminated!", "code: 403", "error: Access Denied!"},
       true,
       false,
       0},
      {"HTTP/1.1 404 x",
       "7",
       {"error: File Not Found!", "status: File Not Found!", "code: 2"},
       false,
       false,
       0},
      {"HTTP/1.1 200 OK",
       "3000000000",
       {"error: Error Reading File Headers.", "status: Error Reading File Headers!", "code: 3"},
       true,
       true,
       0},
  };
  for (const auto& c : cases) {
    transfer_->status = c.status;
    transfer_->length = c.length;
    std::vector<std::string> expected{"status: Initiating Connection.",
                                      "status: Connection Accepted, Retrieving File Information."};
    expected.insert(expected.end(), c.last.begin(), c.last.end());
    EXPECT_EQ(Probe(), expected) << c.status;
    EXPECT_EQ(download_->FileExists(), c.exists) << c.status;
    EXPECT_EQ(download_->FileSize(), c.size) << c.status;
    if (c.exists) {
      EXPECT_EQ(download_->AResume(), c.resumes) << c.status;
    }
  }
}

TEST_F(DownloadTest, EachChunkIsReportedInOrderAndOneByteIsTheLast) {
  WriteBytes(path_, "what was there before");
  transfer_->length = "5";
  transfer_->chunks = {"ab", "cd", "e", "never read"};
  Probe();
  EXPECT_THAT(Run(download_->DownLoad()),
              ElementsAre("status: Opening " + path_.toStdString() + "...", "rate", "time",
                          "bytes: 2", "percent: 40", "status: Recieving File...", "rate", "time",
                          "bytes: 4", "percent: 80", "status: Recieving File...", "rate", "time",
                          "bytes: 5", "percent: 100", "status: Recieving File...", "complete",
                          "status: Download Successful!"));
  EXPECT_EQ(ReadBytes(path_), "abcde");
  EXPECT_FALSE(download_->InDL());
  EXPECT_EQ(transfer_->cancelled, 1);
}

TEST_F(DownloadTest, WithoutALengthTheFirstPercentageIsAFailure) {
  transfer_->chunks = {"ab", "cd"};
  Probe();
  EXPECT_THAT(Run(download_->DownLoad()),
              ElementsAre("status: Opening " + path_.toStdString() + "...", "rate", "time",
                          "bytes: 2", "error: Error Downloading File from : http://site/file",
                          "status: Download Aborted Due To Error In Download!", "code: 1"));
  EXPECT_EQ(ReadBytes(path_), "ab");
}

TEST_F(DownloadTest, AResumedFileGrowsByWhateverComes) {
  transfer_->length = "6";
  Probe();
  EXPECT_THAT(Run(download_->DLResume()),
              ElementsAre("error: Resume File Not Found!", "code: 6",
                          "status: Resume File Not Found, Aborting Download!"));
  WriteBytes(path_, "abc");
  transfer_->chunks = {"def"};
  EXPECT_THAT(Run(download_->DLResume()),
              ElementsAre("status: Opening " + path_.toStdString() + "...", "rate", "time",
                          "bytes: 6", "percent: 100", "status: Recieving File...", "complete",
                          "status: Download Successful!"));
  EXPECT_EQ(transfer_->sent, "Range: bytes=3-\r\n");
  EXPECT_EQ(ReadBytes(path_), "abcdef");
  transfer_->status = "HTTP/1.0 200 OK";
  Probe();
  EXPECT_THAT(Run(download_->DLResume()),
              ElementsAre("error: Resume Not Supported!", "code: 7",
                          "status: Resume NotSupported, Aborting Download!"));
}

TEST_F(DownloadTest, ACancelIsNoticedAfterTheHeadersAndBeforeAChunk) {
  Flow flow;
  transfer_->is_executing = true;
  flow.Start(download_->GetFileInformation());
  download_->Cancel();
  EXPECT_EQ(events_.back(), "status: Cancelling..");
  transfer_->is_executing = false;
  Q_EMIT transfer_->changed();
  ASSERT_TRUE(RunUntil([&] { return !flow.IsRunning(); }));
  EXPECT_EQ(events_.back(), "status: cancelled.");
  EXPECT_EQ(events_.at(events_.size() - 2), "code: 4");
  EXPECT_EQ(transfer_->cancelled, 0);

  transfer_->length = "6";
  transfer_->chunks = {"ab", "cd", "ef"};
  Probe();
  QObject::connect(download_.get(), &Download::RecievedBytes, download_.get(), [this](int bytes) {
    if (bytes == 4) {
      download_->Cancel();
    }
  });
  const auto events = Run(download_->DownLoad());
  EXPECT_EQ(events.back(), "status: Cancelled.");
  EXPECT_EQ(events.at(events.size() - 2), "code: 4");
  EXPECT_EQ(ReadBytes(path_), "abcd");
  EXPECT_TRUE(download_->InDL());
  EXPECT_FALSE(download_->CCancel());

  download_->Cancel();
  EXPECT_THAT(Run(download_->DownLoad()), IsEmpty()) << "a pending cancel ends it silently";
}

TEST_F(DownloadTest, APausedTransferSaysSoAndIsNotCancelledBeforeItGoesOn) {
  transfer_->length = "4";
  transfer_->chunks = {"ab", "cd"};
  Probe();
  Flow flow;
  flow.Start(download_->DownLoad());
  download_->Pause(true);
  const auto paused = [&] { return std::ranges::count(events_, "status: Paused."); };
  ASSERT_TRUE(RunUntil([&] { return paused() >= 2; }));
  download_->Cancel();
  ASSERT_TRUE(RunUntil([&] { return paused() >= 4; }));
  download_->Pause(false);
  ASSERT_TRUE(RunUntil([&] { return !flow.IsRunning(); }));
  EXPECT_EQ(events_.back(), "status: Cancelled.");
  EXPECT_EQ(ReadBytes(path_), "ab");
}

TEST_F(DownloadTest, TheOnlineCheckNamesTheLinks) {
  download_->options.OnlineCheck = true;
  const std::vector<std::string> refused{"code: 5", "error: No Connection Found!",
                                         "status: Download aborted, no connection present!"};
  EXPECT_EQ(Probe(), refused);
  EXPECT_EQ(Run(download_->DownLoad()), refused);
  links_ = Links(Link::kProxy) | Link::kModem;
  EXPECT_EQ(Probe().at(0), "link: Connected Via Modem.");
  EXPECT_EQ(events_.at(1), "link: Connected Through A Proxy.");
  EXPECT_TRUE(download_->Connected());
}

// The real transfer, against a server that does everything wrong.
class HostileServerTest : public ::testing::Test {
 protected:
  struct Run {
    std::unique_ptr<Download> download;
    QString path;
    std::vector<std::string> events;
    Flow flow;
  };

  static Task<> Fetch(Run* run) {
    co_await run->download->GetFileInformation();
    if (run->events.back() == "status: Retrieving File Information Complete!") {
      co_await run->download->DownLoad();
    }
  }
  // Starts a download of `url`; the limits are short ones.
  void Begin(Run& run, const QUrl& url, const QString& name) {
    run.path = folder_.filePath(name);
    run.download = std::make_unique<Download>(
        std::make_unique<CurlTransfer>(TransferLimits{.connect = 2s, .silence = silence_}));
    run.download->options.URL = url.toString();
    run.download->options.SaveLocation = run.path;
    run.download->options.max_bytes = 1'000'000;
    Record(*run.download, run.events);
    run.flow.Start(Fetch(&run));
  }
  static std::string CodeOf(const Run& run) {
    std::string codes;
    for (const std::string& event : run.events) {
      codes += event.starts_with("code") || event == "complete" ? event + ";" : "";
    }
    return codes;
  }

  QTemporaryDir folder_;
  ScriptedServer server_;
  std::chrono::seconds silence_ = 1s;  // the limit of what is begun
};

TEST_F(HostileServerTest, EveryFaultIsReportedAndNoneIsTakenForSuccess) {
  const QByteArray ok = "HTTP/1.1 200 OK\r\n";
  const QByteArray length = "Content-Length: 300000\r\n\r\n";
  const QByteArray body(300000, 'b');
  const QByteArray chunked = "Transfer-Encoding: chunked\r\n\r\n";
  const struct {
    const char* name;
    Reply reply;
    const char* codes;
    qsizetype written = 0;  // -1: any
  } cases[] = {
      {"whole", {ok + length + body}, "complete;", 300000},
      {"http10", {"HTTP/1.0 200 OK\r\n" + length + body}, "complete;", 300000},
      {"surplus", {ok + length + body + body}, "complete;", 300000},
      {"no_length", {ok + "\r\n" + body}, "code: 1;", 1024},
      {"bad_length", {ok + "Content-Length: many\r\n\r\n" + body}, "code: 3;"},
      {"negative", {ok + "Content-Length: -5\r\n\r\n" + body}, "code: 3;"},
      {"cut_off", {ok + length + body.left(2000)}, "code: 1;", 1024},
      {"one_byte", {ok + length + "b"}, "code: 1;"},
      {"reset", {ok + length + body.left(2000), Then::kReset}, "code: 1;", -1},
      {"declared_too_large", {ok + "Content-Length: 2000000\r\n\r\n" + body}, "code: 1;", -1},
      {"endless", {ok + chunked, Then::kEndless}, "code: 1;", 1024},
      {"endless_with_length",
       {ok + "Content-Length: 9\r\n" + chunked, Then::kEndless},
       "code: 1;",
       -1},
      {"endless_headers", {ok + ("X: " + QByteArray(1000, 'x') + "\r\n").repeated(90)}, "code: 3;"},
      {"silence", {"", Then::kSilence}, "code: 3;"},
      {"silence_after_headers", {ok + length, Then::kSilence}, "code: 1;"},
      {"drip", {ok + length, Then::kDrip}, "code: 1;"},
      {"drip_of_headers", {"HTTP/1.1 200 OK\r\nX: ", Then::kDrip}, "code: 3;"},
      {"nothing", {""}, "code: 3;"},
      {"no_http", {"SSH-2.0-dropbear\r\n"}, "code: 3;"},
      {"401", Answer("401 No", "login"), "code: 401;"},
      {"403", Answer("403 No", "page"), "code: 403;"},
      {"404", Answer("404 No", "page"), "code: 2;"},
      {"500", Answer("500 Oops", "sorry"), "complete;", 5},
      {"redirect", RedirectTo("/whole"), "complete;", 300000},
      {"redirect_to_file", RedirectTo("file:///etc/passwd"), "code: 3;"},
      {"redirect_to_ftp", RedirectTo("ftp://127.0.0.1/x"), "code: 3;"},
      {"redirect_off_this_computer", RedirectTo("http://192.0.2.1/x"), "code: 3;"},
      {"circle", RedirectTo("/circle"), "code: 3;"},
      {"redirect_without_place",
       {"HTTP/1.1 302 Found\r\nContent-Length: 2\r\n\r\nhm"},
       "complete;",
       2},
  };
  for (const auto& c : cases) {
    server_.replies[QByteArray("/") + c.name] = c.reply;
  }
  std::vector<Run> runs(std::size(cases));
  for (std::size_t i = 0; i < runs.size(); ++i) {
    const QString name = QLatin1String(cases[i].name);
    Begin(runs[i], server_.Address(u'/' + name), name);
  }
  ASSERT_TRUE(RunUntil(
      [&] { return std::ranges::none_of(runs, [](Run& run) { return run.flow.IsRunning(); }); },
      60s));
  for (std::size_t i = 0; i < runs.size(); ++i) {
    EXPECT_EQ(CodeOf(runs[i]), cases[i].codes) << cases[i].name;
    const qsizetype size = ReadBytes(runs[i].path).size();
    if (cases[i].written >= 0) {
      EXPECT_GE(size, cases[i].written) << cases[i].name;
      EXPECT_LT(size, std::max<qsizetype>(1025, cases[i].written + 1024)) << cases[i].name;
    }
    EXPECT_LE(size, 1'000'000) << cases[i].name;
  }
}

TEST_F(HostileServerTest, AddressesThatAreNotSafeAreNotFetched) {
  for (const char* address :
       {"http://192.0.2.1/x", "file:///etc/passwd", "ftp://127.0.0.1/", "x", ""}) {
    Run run;
    Begin(run, QUrl(QLatin1String(address)), u"x"_s);
    ASSERT_TRUE(RunUntil([&] { return !run.flow.IsRunning(); }));
    EXPECT_EQ(CodeOf(run), "code: 3;") << address;
    EXPECT_EQ(run.download->FailedTransfer(), TransferError::kBadAddress) << address;
  }
  EXPECT_TRUE(server_.requests.isEmpty());
}

TEST_F(HostileServerTest, ACertificateThatNobodyVouchesForIsRefused) {
  auto listener = testing::SelfSignedListener();
  if (!listener) {
    GTEST_SKIP() << "needs the program openssl to make a certificate";
  }
  ScriptedServer secure(std::move(listener));
  secure.replies["/"] = Answer("200 OK", "trust me");
  Run run;
  Begin(run, secure.Address(u"/"_s, u"https"_s), u"x"_s);
  ASSERT_TRUE(RunUntil([&] { return !run.flow.IsRunning(); }));
  EXPECT_EQ(CodeOf(run), "code: 3;");
  EXPECT_EQ(run.download->FailedTransfer(), TransferError::kNotTrusted);
  EXPECT_TRUE(secure.requests.isEmpty());
}

// A body that is not read yet stays in the network; the memory of this process is bounded by it.
TEST_F(HostileServerTest, TheBodyWaitsUntilItIsRead) {
  server_.replies["/"] = {"HTTP/1.1 200 OK\r\nContent-Length: 900000\r\n\r\n" +
                          QByteArray(900000, 'b')};
  CurlTransfer transfer;
  transfer.SetUrl(server_.Address(u"/"_s));
  transfer.Execute({});
  ASSERT_TRUE(RunUntil([&] { return !transfer.StillExecuting(); }));
  int arrivals = 0;
  QObject::connect(&transfer, &HttpTransfer::changed, &transfer, [&] { ++arrivals; });
  RunUntil([] { return false; }, 200ms);
  EXPECT_EQ(arrivals, 0) << "taken before anybody asked";
  qsizetype total = 0;
  const auto read = [&]() -> Task<> {
    while (true) {
      const auto chunk = co_await transfer.GetChunk(50'001);
      if (!chunk || chunk->isEmpty()) {
        break;
      }
      total += chunk->size();
    }
  };
  EXPECT_TRUE(RunTask(read(), 10s));
  EXPECT_EQ(total, 900000);
}

TEST_F(HostileServerTest, ADiskThatIsFullIsAFailure) {
  server_.replies["/"] = Answer("200 OK", QByteArray(20'000, 'b'));
  Run run;
  testing::OnFullDisk(5000, [&] {
    Begin(run, server_.Address(u"/"_s), u"file"_s);
    return RunUntil([&] { return !run.flow.IsRunning(); });
  });
  EXPECT_EQ(CodeOf(run), "code: 1;");
  EXPECT_EQ(run.download->Failure(), DownloadFailure::kDisk);

  run.download->options.SaveLocation = folder_.filePath(u"no/such/folder"_s);
  EXPECT_TRUE(RunTask(Fetch(&run)));
  EXPECT_EQ(CodeOf(run), "code: 1;code: 1;");
}

TEST_F(HostileServerTest, AServerThatIgnoresRangesGetsItsFileAppended) {
  server_.replies["/"] = Answer("200 OK", "whole file");
  Run run;
  Begin(run, server_.Address(u"/"_s), u"file"_s);
  ASSERT_TRUE(RunUntil([&] { return !run.flow.IsRunning(); }));
  WriteBytes(run.path, "whole");
  EXPECT_TRUE(RunTask(run.download->DLResume()));
  EXPECT_EQ(ReadBytes(run.path), "wholewhole file");
  EXPECT_TRUE(server_.requests.last().contains("Range: bytes=5-\r\n"));
}

TEST_F(HostileServerTest, ACancelEndsTheWaitForASilentServer) {
  server_.replies["/"] = {"HTTP/1.1 200 OK\r\nContent-Length: 9999\r\n\r\n" + QByteArray(4000, 'b'),
                          Then::kSilence};
  silence_ = 60s;
  Run run;
  Begin(run, server_.Address(u"/"_s), u"file"_s);
  ASSERT_TRUE(RunUntil([&] { return run.events.back() == "status: Recieving File..."; }));
  run.download->Cancel();
  ASSERT_TRUE(RunUntil([&] { return !run.flow.IsRunning(); })) << "waited for the limit";
  EXPECT_EQ(CodeOf(run), "code: 4;");
  EXPECT_TRUE(RunUntil([this] { return server_.open_connections == 0; }));
}

}  // namespace
}  // namespace quayline
