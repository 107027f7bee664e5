#include "programs/defaults/CommandLine.h"

#include <glib.h>

#include <memory>
#include <utility>

#include "platform/foundation/GLibPointer.h"
#include "programs/defaults/format/Escaped.h"

namespace orvalo {

namespace {

using Context = std::unique_ptr<GOptionContext, Release<g_option_context_free>>;
using GErrorPointer = std::unique_ptr<GError, Release<g_error_free>>;
using GTexts = std::unique_ptr<char*, Release<g_strfreev>>;

constexpr auto kProgram = "orvalo-defaults";

/// A command's options in the form that GLib takes, and what it found of them.
class Parser {
  public:
    explicit Parser(const CommandSyntax& syntax)
        : syntax_(syntax), texts_(syntax.options.size()), flags_(syntax.options.size()) {
        for (std::size_t index = 0; index < syntax.options.size(); ++index) {
            const auto& option = syntax.options[index];
            // Bytes as they were typed, whatever the locale.
            entries_.push_back(
                {option.name, '\0', 0,
                 option.argument == nullptr ? G_OPTION_ARG_NONE : G_OPTION_ARG_FILENAME,
                 option.argument == nullptr ? static_cast<void*>(&flags_[index])
                                            : static_cast<void*>(&texts_[index]),
                 option.description, option.argument});
        }
        entries_.push_back({"help", 'h', 0, G_OPTION_ARG_NONE, &help_, "Show this help", nullptr});
        entries_.push_back({G_OPTION_REMAINING, '\0', 0, G_OPTION_ARG_FILENAME_ARRAY, &arguments_,
                            nullptr, syntax.arguments});
        entries_.push_back({});
        g_option_context_set_help_enabled(context_.get(), FALSE);
        g_option_context_set_summary(context_.get(), syntax.summary);
        g_option_context_add_main_entries(context_.get(), entries_.data(), nullptr);
    }
    ~Parser() {
        for (auto* text : texts_) {
            g_free(text);
        }
        g_strfreev(arguments_);
    }
    Parser(const Parser&) = delete;
    Parser& operator=(const Parser&) = delete;

    void parse(const std::vector<std::string>& words);
    CommandLine result() const;
    std::string help() const {
        return GText(g_option_context_get_help(context_.get(), TRUE, nullptr)).get();
    }

  private:
    const CommandSyntax& syntax_;
    std::vector<char*> texts_;
    std::vector<gboolean> flags_;
    std::vector<GOptionEntry> entries_;
    gboolean help_ = FALSE;
    char** arguments_ = nullptr;
    Context context_{g_option_context_new(nullptr)};
};

void Parser::parse(const std::vector<std::string>& words) {
    // The program's name, the words, the end: GLib takes the list as its own.
    GTexts copy(g_new0(char*, words.size() + 2));
    copy.get()[0] = g_strdup(syntax_.name);
    for (std::size_t index = 0; index < words.size(); ++index) {
        copy.get()[index + 1] = g_strdup(words[index].c_str());
    }
    auto* list = copy.release();
    GError* failure = nullptr;
    const bool isParsed = g_option_context_parse_strv(context_.get(), &list, &failure) != FALSE;
    copy.reset(list);
    if (!isParsed) {
        const GErrorPointer error(failure);
        throw BadOption(syntax_.name + (": " + escaped(error->message)) + ".");
    }
}

CommandLine Parser::result() const {
    CommandLine line;
    line.command = syntax_.name;
    for (std::size_t index = 0; index < syntax_.options.size(); ++index) {
        if (texts_[index] != nullptr) {
            line.options.emplace(syntax_.options[index].name, texts_[index]);
        } else if (flags_[index] != FALSE) {
            line.options.emplace(syntax_.options[index].name, "");
        }
    }
    for (char** argument = arguments_; argument != nullptr && *argument != nullptr; ++argument) {
        line.arguments.emplace_back(*argument);
    }
    line.wantsHelp = help_ != FALSE;
    return line;
}

}  // namespace

CommandLine CommandLine::parse(const CommandSyntax& syntax, const std::vector<std::string>& words) {
    Parser parser(syntax);
    parser.parse(words);
    auto line = parser.result();
    const auto count = line.arguments.size();
    if (line.wantsHelp) {
        return line;
    }
    if (count < syntax.fewest) {
        throw BadOption(std::string(syntax.name) + " wants " + syntax.arguments + ".");
    }
    if (count > syntax.most) {
        throw BadOption(std::string(syntax.name) + ": " + inQuotes(line.arguments[syntax.most]) +
                        " is one argument too many.");
    }
    return line;
}

std::string helpOf(const CommandSyntax& syntax) {
    // Which the help begins with, and messages later.
    g_set_prgname((std::string(kProgram) + " " + syntax.name).c_str());
    auto text = Parser(syntax).help();
    g_set_prgname(kProgram);
    return text;
}

}  // namespace orvalo
