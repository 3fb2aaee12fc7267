// quillonctl smtp: the row of the mail server, and a password that nobody sees.
#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <termios.h>
#include <unistd.h>
#include <utmp.h>

#include "tools/quillonctl_fixture.h"

namespace quillon {
namespace {

class QuillonctlSmtp : public Quillonctl {
 protected:
  QuillonctlSmtp() { CreateWhole(); }

  Row Stored() const { return Sql("Quillon.mdb", "SELECT * FROM Settings_SmtpServer").at(0); }
  std::string Password() const {
    return Text("Quillon.mdb", "SELECT Pass FROM Settings_SmtpServer");
  }

  // The command is refused with this reason, and nothing is written.
  void ExpectRefused(const std::string& options, const std::string& reason,
                     const std::string& input = {}) const {
    const Row before = Stored();
    const Outcome set = Run("smtp set " + options, input);
    EXPECT_EQ(set.status, 1) << options;
    EXPECT_EQ(set.error, "quillonctl: " + reason + "\n") << options;
    EXPECT_EQ(set.out, "") << options;
    EXPECT_EQ(Stored(), before) << options;
  }
};

TEST_F(QuillonctlSmtp, EveryOptionHasItsField) {
  const Outcome set =
      Run("smtp set --server mail.example.org --port 587 --from 'Büro <quillon@example.org>'"
          " --subject 'Täglich' --priority high --char-set UTF-8 --time-out 45 --retries 3"
          " --login yes --auth-mode other --account postman --password --encoding 0"
          " --body-encoding 2 --body-format 1",
          "secret word\n");
  EXPECT_EQ(set.status, 0) << set.error;
  EXPECT_EQ(set.error, "");
  EXPECT_EQ(Stored(),
            (Row{"mail.example.org", "587", "Büro <quillon@example.org>", "Täglich", "high",
                 "UTF-8", "45", "3", "1", "other", "postman", "secret word", "0", "2", "1"}));
}

TEST_F(QuillonctlSmtp, WhatIsNotGivenStays) {
  Row expected = Stored();
  expected[7] = "0";
  ASSERT_EQ(Run("smtp set --retries 0").status, 0);
  EXPECT_EQ(Stored(), expected);
}

TEST_F(QuillonctlSmtp, WhatNoMailCanBeSentByIsRefused) {
  const auto server = [](const std::string& text) {
    return "--server: '" + text + "' is neither a name nor an address of a machine";
  };
  const std::pair<const char*, std::string> kWrong[] = {
      {"--server ''", server("")},
      {"--server 'mail example'", server("mail example")},
      {"--server mail.example.org/x", server("mail.example.org/x")},
      {"--port 0", "--port: '0' is no number from 1 to 65535"},
      {"--from quillon",
       "--from: 'quillon' is not one mail address; write one such as noc@example.org"},
      {"--subject 'a\nb'", "--subject: the text has control characters"},
      {"--priority urgent",
       "--priority: 'urgent' is no priority; write Highest, High, Normal, Low, Lowest or 1 to 5"},
      {"--priority ''",
       "--priority: '' is no priority; write Highest, High, Normal, Low, Lowest or 1 to 5"},
      {"--time-out 3601", "--time-out: '3601' is no number from 0 to 3600"},
      {"--time-out -1", "--time-out: '-1' is no number from 0 to 3600"},
      {"--retries 11", "--retries: '11' is no number from 0 to 10"},
      {"--retries -1", "--retries: '-1' is no number from 0 to 10"},
      {"--auth-mode 'auth login'",
       "--auth-mode: 'auth login' is no mode; write AUTH LOGIN, or other for the best one offered"},
      {"--encoding 1", "--encoding: '1' is no number from 0 to 0"},
      {"--body-encoding 3", "--body-encoding: '3' is no number from 0 to 2"},
      {"--body-format 2", "--body-format: '2' is no number from 0 to 1"},
  };
  for (const auto& [options, reason] : kWrong) ExpectRefused(options, reason);
  EXPECT_EQ(Run("smtp set --char-set UTF-16").status, 1);
}

TEST_F(QuillonctlSmtp, OneRefusedValueKeepsAllFromBeingWritten) {
  ExpectRefused("--server mail.example.org --password --retries 99",
                "--retries: '99' is no number from 0 to 10", "secret\n");
}

TEST_F(QuillonctlSmtp, PasswordIsTheFirstLineOfTheInput) {
  const std::pair<const char*, const char*> kInputs[] = {
      {"secret\n", "secret"},
      {"one\ntwo\n", "one"},
      {"no end", "no end"},
      {"  '\"ä \n", "  '\"ä "},
      {"\n", ""},
  };
  for (const auto& [input, password] : kInputs) {
    const Outcome set = Run("smtp set --password", input);
    EXPECT_EQ(set.status, 0) << set.error;
    EXPECT_EQ(Password(), password);
  }
}

TEST_F(QuillonctlSmtp, InputThatIsNoPasswordLeavesTheOneThereIs) {
  ASSERT_EQ(Run("smtp set --password", "secret\n").status, 0);
  ExpectRefused("--password", "no password was given", "");
  ExpectRefused("--password", "the password is too long", std::string(1001, 'x') + "\n");
  ExpectRefused("--password", "--password: the text has control characters", "secret\r\n");
  ExpectRefused("--password", "--password: the text is not in UTF-8", "\xFF\n");
}

TEST_F(QuillonctlSmtp, PasswordIsNeverShown) {
  EXPECT_NE(Run("smtp").out.find("password       not set\n"), std::string::npos);
  const Outcome set = Run("smtp set --password", "secret\n");
  EXPECT_EQ(set.out, "Saved for the next mail\n");
  const std::string plain = Run("smtp").out;
  EXPECT_NE(plain.find("password       set\n"), std::string::npos) << plain;
  const std::string json = Run("smtp show --json").out;
  EXPECT_NE(json.find("\"password\": \"set\""), std::string::npos) << json;
  EXPECT_EQ((plain + json).find("secret"), std::string::npos);
}

TEST_F(QuillonctlSmtp, PasswordIsNoArgument) {
  for (const char* arguments : {"smtp set --password secret", "smtp set --password=secret"}) {
    EXPECT_EQ(Run(arguments, "x\n").status, 2) << arguments;
  }
  EXPECT_EQ(Password(), "");
}

TEST_F(QuillonctlSmtp, ShowHasNumbersAndTruthsForPrograms) {
  const std::string json = Run("smtp show --json").out;
  for (const char* line : {"\"port\": 25,", "\"login\": false,", "\"retries\": 2,",
                           "\"priority\": \"Normal\",", "\"auth-mode\": \"AUTH LOGIN\","}) {
    EXPECT_NE(json.find(line), std::string::npos) << line << " in " << json;
  }
}

TEST_F(QuillonctlSmtp, ShowTakesWhateverIsStored) {
  Sql("Quillon.mdb",
      "UPDATE Settings_SmtpServer SET MailServer = NULL, MailPort = 'smtp', UseAuth = NULL,"
      " Pass = NULL");
  const Outcome show = Run("smtp show --json");
  EXPECT_EQ(show.status, 0) << show.error;
  for (const char* line : {"\"server\": \"\",", "\"port\": \"smtp\",", "\"login\": \"\",",
                           "\"password\": \"not set\","}) {
    EXPECT_NE(show.out.find(line), std::string::npos) << line << " in " << show.out;
  }
}

TEST_F(QuillonctlSmtp, MissingRowIsSaid) {
  Sql("Quillon.mdb", "DELETE FROM Settings_SmtpServer");
  for (const char* arguments : {"smtp", "smtp set --retries 1"}) {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.status, 1) << arguments;
    EXPECT_EQ(outcome.error, "quillonctl: Quillon.mdb: Settings_SmtpServer has no row\n");
  }
}

// The program at a terminal, which stays when it has gone.
class AtTerminal {
 public:
  explicit AtTerminal(const std::string& home) {
    openpty(&keyboard_, &terminal_, nullptr, nullptr, nullptr);
    // A program that is started meanwhile must not hold it open.
    fcntl(keyboard_, F_SETFD, FD_CLOEXEC);
    fcntl(terminal_, F_SETFD, FD_CLOEXEC);
    program_ = fork();
    if (program_ != 0) return;
    login_tty(terminal_);
    execl(QUILLONCTL_PATH, "quillonctl", "-C", home.c_str(), "smtp", "set", "--password", nullptr);
    _exit(127);
  }
  ~AtTerminal() {
    if (program_ > 0) {
      kill(program_, SIGKILL);
      waitpid(program_, nullptr, 0);
    }
    close(keyboard_);
    close(terminal_);
  }
  AtTerminal(const AtTerminal&) = delete;
  AtTerminal& operator=(const AtTerminal&) = delete;

  // Reads until this has been shown. False where it is not, in ten seconds.
  bool Shows(const std::string& text) {
    while (shown.find(text) == std::string::npos) {
      pollfd output{keyboard_, POLLIN, 0};
      char bytes[256];
      if (poll(&output, 1, 10'000) != 1) return false;
      const ssize_t count = read(keyboard_, bytes, sizeof bytes);
      if (count <= 0) return false;
      shown.append(bytes, static_cast<std::size_t>(count));
    }
    return true;
  }
  void Type(const std::string& keys) const {
    EXPECT_EQ(write(keyboard_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
  }
  void Signal(int signal) const { kill(program_, signal); }
  bool Echoes() const {
    termios state{};
    tcgetattr(terminal_, &state);
    return (state.c_lflag & ECHO) != 0;
  }
  // As of waitpid.
  int End() {
    int status = 0;
    waitpid(program_, &status, 0);
    program_ = -1;
    return status;
  }

  std::string shown;

 private:
  int keyboard_ = -1;
  int terminal_ = -1;
  pid_t program_ = -1;
};

const std::string kPrompt = "(nothing removes it): ";

TEST_F(QuillonctlSmtp, TerminalIsAskedWithoutAnEcho) {
  AtTerminal terminal(home_.string());
  ASSERT_TRUE(terminal.Shows(kPrompt)) << terminal.shown;
  EXPECT_FALSE(terminal.Echoes());
  terminal.Type("secret\n");
  EXPECT_TRUE(terminal.Shows("Saved")) << terminal.shown;
  EXPECT_EQ(terminal.End(), 0);
  EXPECT_TRUE(terminal.Echoes());
  EXPECT_EQ(terminal.shown.find("secret"), std::string::npos) << terminal.shown;
  EXPECT_EQ(Password(), "secret");
}

TEST_F(QuillonctlSmtp, SignalEndsItWithTheEchoAsBefore) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
    const auto before = ::signal(signal, SIG_DFL);  // a test in the background ignores some
    AtTerminal terminal(home_.string());
    ::signal(signal, before);
    ASSERT_TRUE(terminal.Shows(kPrompt)) << terminal.shown;
    terminal.Type("secr");
    terminal.Signal(signal);
    const int status = terminal.End();
    EXPECT_TRUE(WIFSIGNALED(status)) << signal;
    EXPECT_EQ(WTERMSIG(status), signal);
    EXPECT_TRUE(terminal.Echoes()) << signal;
    EXPECT_EQ(Password(), "");
  }
}

TEST_F(QuillonctlSmtp, HalfAPasswordIsNoneWhereTheSignalIsIgnored) {
  const auto before = signal(SIGHUP, SIG_IGN);  // which programs inherit
  AtTerminal terminal(home_.string());
  signal(SIGHUP, before);
  ASSERT_TRUE(terminal.Shows(kPrompt)) << terminal.shown;
  terminal.Type("secr");
  terminal.Signal(SIGHUP);
  EXPECT_TRUE(terminal.Shows("no password was given")) << terminal.shown;
  EXPECT_EQ(WEXITSTATUS(terminal.End()), 1);
  EXPECT_TRUE(terminal.Echoes());
  EXPECT_EQ(Password(), "");
}

TEST_F(QuillonctlSmtp, KeysOfInterruptAndEndLeaveThePassword) {
  for (const char* key : {"\x03", "\x04"}) {
    AtTerminal terminal(home_.string());
    ASSERT_TRUE(terminal.Shows(kPrompt)) << terminal.shown;
    terminal.Type(key);
    EXPECT_NE(terminal.End(), 0);
    EXPECT_TRUE(terminal.Echoes());
    EXPECT_EQ(Password(), "");
  }
}

TEST_F(QuillonctlSmtp, KeyOfStopIsPassedOver) {
  AtTerminal terminal(home_.string());
  ASSERT_TRUE(terminal.Shows(kPrompt)) << terminal.shown;
  terminal.Type("\x1A");
  terminal.Type("secret\n");
  EXPECT_EQ(terminal.End(), 0);
  EXPECT_EQ(Password(), "secret");
}

}  // namespace
}  // namespace quillon
