#include "geo/staticmap/httpget.h"

#include <curl/curl.h>

#include <algorithm>
#include <memory>
#include <string_view>

#include "shell/CHostFiles.h"
#include "shell/numbers.h"
#include "shell/seams.h"

namespace {

constexpr const char* Agent = "Mozilla/4.0 (compatible; MSIE 6.0; Windows NT 5.0; .NET CLR 1.1.4322)";
constexpr const char* Headers[] = {
    "Content-Type: application/x-www-form-urlencoded",
    "Accept: image/gif, image/x-xbitmap, image/jpeg, image/pjpeg, application/x-shockwave-flash, */*",
    "Cache-Control: no-cache",
    "Pragma: no-cache",  // for caches that know the older protocol only
};
constexpr const char* Schemes = "http,https";
constexpr long MostRedirects = 10;
constexpr std::size_t MostBytes = 32u << 20;

template <auto Free>
struct Freed {
    template <class T>
    void operator()(T* object) const {
        Free(object);
    }
};
using Session = std::unique_ptr<CURL, Freed<curl_easy_cleanup>>;
using ParsedUrl = std::unique_ptr<CURLU, Freed<curl_url_cleanup>>;
using HeaderList = std::unique_ptr<curl_slist, Freed<curl_slist_free_all>>;

struct Answer {
    std::string Body;
    int Status = 0;             // of the last head that began
    bool HeadComplete = false;  // and whether it is there as a whole
};

std::string Part(CURLU* url, CURLUPart part, unsigned flags = 0) {
    char* text = nullptr;
    if (curl_url_get(url, part, &text, flags) != CURLUE_OK) {
        return {};
    }
    const std::unique_ptr<char, Freed<curl_free>> owner(text);
    return text;
}

// Nothing for what can't be asked: no server, no such port, another scheme.
ParsedUrl Parse(const std::string& url) {
    const bool complete = url.find("://") != std::string::npos;
    const std::string whole = complete ? url : "http://" + url;
    ParsedUrl parsed(curl_url());
    if (!parsed || curl_url_set(parsed.get(), CURLUPART_URL, whole.c_str(), CURLU_PATH_AS_IS) != CURLUE_OK ||
        Part(parsed.get(), CURLUPART_HOST).empty() ||
        ParseInt(Part(parsed.get(), CURLUPART_PORT, CURLU_DEFAULT_PORT)) == 0) {
        return nullptr;
    }
    // Nobody is logged in anywhere.
    curl_url_set(parsed.get(), CURLUPART_USER, nullptr, 0);
    curl_url_set(parsed.get(), CURLUPART_PASSWORD, nullptr, 0);
    return parsed;
}

// Always "http", whatever the scheme: that is the form the service knows.
std::string Referrer(CURLU* url) {
    const std::string port = Part(url, CURLUPART_PORT, CURLU_DEFAULT_PORT);
    return "http://" + Part(url, CURLUPART_HOST) + (port == "80" ? "" : ":" + port) + "/";
}

HeaderList MakeHeaders() {
    HeaderList list;
    for (const char* header : Headers) {
        curl_slist* longer = curl_slist_append(list.get(), header);
        if (longer == nullptr) {
            return nullptr;
        }
        (void)list.release();
        list.reset(longer);
    }
    return list;
}

std::size_t TakeHead(const char* bytes, std::size_t, std::size_t size, void* target) {
    Answer& answer = *static_cast<Answer*>(target);
    const std::string_view line(bytes, size);
    if (line.starts_with("HTTP/")) {
        answer.HeadComplete = false;
        answer.Status = ParseInt(line.substr(std::min(line.find(' '), line.size())));
    } else if (line == "\r\n" || line == "\n") {
        constexpr int FirstFinal = 200;  // what is below announces another answer
        answer.HeadComplete = answer.Status >= FirstFinal;
    }
    return size;
}

std::size_t TakeBody(const char* bytes, std::size_t, std::size_t size, void* target) {
    std::string& body = static_cast<Answer*>(target)->Body;
    const std::size_t taken = std::min(size, MostBytes - body.size());
    body.append(bytes, taken);
    return taken;  // less than `size` ends the transfer
}

}  // namespace

bool HttpGetToFile(const std::string& url, const std::string& targetPath, std::chrono::milliseconds limit) {
    const ParsedUrl parsed = Parse(url);
    const HeaderList headers = MakeHeaders();
    Answer answer;
    const Session session(curl_easy_init());
    if (!parsed || !headers || !session) {
        return false;
    }
    CURL* const curl = session.get();
    curl_easy_setopt(curl, CURLOPT_CURLU, parsed.get());
    curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, Schemes);
    curl_easy_setopt(curl, CURLOPT_REDIR_PROTOCOLS_STR, Schemes);
    curl_easy_setopt(curl, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(curl, CURLOPT_MAXREDIRS, MostRedirects);
    curl_easy_setopt(curl, CURLOPT_HTTP_VERSION, CURL_HTTP_VERSION_1_1);
    curl_easy_setopt(curl, CURLOPT_USERAGENT, Agent);
    curl_easy_setopt(curl, CURLOPT_REFERER, Referrer(parsed.get()).c_str());
    curl_easy_setopt(curl, CURLOPT_HTTPHEADER, headers.get());
    curl_easy_setopt(curl, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);  // those of a proxy are no answer
    curl_easy_setopt(curl, CURLOPT_HEADERFUNCTION, &TakeHead);
    curl_easy_setopt(curl, CURLOPT_HEADERDATA, &answer);
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, &TakeBody);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, &answer);
    curl_easy_setopt(curl, CURLOPT_TIMEOUT_MS, static_cast<long>(limit.count()));
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    // A search for the host's address that is late is left to end by itself.
    curl_easy_setopt(curl, CURLOPT_QUICK_EXIT, 1L);
    const bool complete = curl_easy_perform(curl) == CURLE_OK;
    // A redirection that leads nowhere is no answer.
    const bool answered = complete || answer.Status / 100 != 3 || !answer.Body.empty();
    if (!answer.HeadComplete || !answered) {
        return false;
    }
    return HostFiles().WriteFile(targetPath, answer.Body);
}
