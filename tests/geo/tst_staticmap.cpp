#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <sstream>

#include "geo/staticmap/CStaticMap.h"
#include "geo/staticmap/httpget.h"
#include "tests/geo/CAnsweringServer.h"
#include "tests/support/CTestFolder.h"

namespace {

class StaticMap : public testing::Test {
protected:
    StaticMap() { setenv("no_proxy", "*", 1); }
    ~StaticMap() override {
        unsetenv("no_proxy");
        unsetenv("http_proxy");
    }

    void UseService(const std::string& host) const {
        Folder.WriteFile("map.ini", "[static_image]\nhost = " + host + "\n");
    }
    bool TargetExists() const { return std::filesystem::exists(Folder.Host("_map.png")); }

    CTestFolder Folder;
    const std::string Target = Folder.Path("_map.png");
};

std::vector<std::string> SortedLines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

// The value of `paths` in a request, cut at "|".
std::vector<std::string> AskedPaths(const std::string& request) {
    const std::size_t begin = request.find("&paths=") + 7;
    std::istringstream stream(request.substr(begin, request.find('&', begin) - begin));
    std::vector<std::string> paths;
    for (std::string path; std::getline(stream, path, '|');) {
        paths.push_back(path);
    }
    return paths;
}

}  // namespace

TEST_F(StaticMap, AsksForItsLinesAsTheyAre) {
    CAnsweringServer server([](const std::string&, const auto& send) {
        send("HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\nPNG");
    });
    CStaticMap map;
    EXPECT_TRUE(map.AddPath(113.2644, 23.1291, 113.26523456789012345, -23.5));
    EXPECT_TRUE(map.AddPath(113.26523456789012345, -23.5, 113.2644, 23.1291));
    EXPECT_TRUE(map.AddPath(113.2644, 23.1291, 113.26523456789012345, -23.5));
    EXPECT_TRUE(map.AddPath(-1.0, 1e-13, 2.0, 3.0));
    EXPECT_FALSE(map.AddPath(0.0, 1.0, 1.0, 1.0));
    EXPECT_FALSE(map.AddPath(1.0, -0.0, 1.0, 1.0));
    EXPECT_FALSE(map.AddPath(1.0, 1.0, 0.0, 1.0));
    EXPECT_FALSE(map.AddPath(1.0, 1.0, 1.0, 0.0));

    // Where no service was set up nothing is asked.
    Folder.WriteFile("_map.png", "former");
    (void)map.GetImage(Target);
    EXPECT_FALSE(TargetExists());
    EXPECT_TRUE(server.TakeRequests().empty());

    UseService(server.Host());
    (void)map.GetImage(Target);
    const std::vector<std::string> requests = server.TakeRequests();
    ASSERT_EQ(requests.size(), 1U);
    EXPECT_EQ(requests[0].substr(0, requests[0].find("\r\n")),
              "GET /staticimage?width=640&height=480&paths="
              "113.2644,23.1291;113.26523456789,-23.5|113.26523456789,-23.5;113.2644,23.1291|-1,0;2,3"
              "&pathStyles=0xff0000,5,1 HTTP/1.1");
    EXPECT_EQ(SortedLines(requests[0].substr(requests[0].find("\r\n") + 2)),
              (std::vector<std::string>{
                  "\r",
                  "Accept: image/gif, image/x-xbitmap, image/jpeg, image/pjpeg, "
                  "application/x-shockwave-flash, */*\r",
                  "Cache-Control: no-cache\r",
                  "Content-Type: application/x-www-form-urlencoded\r",
                  "Host: " + server.Host() + "\r",
                  "Pragma: no-cache\r",
                  "Referer: http://" + server.Host() + "/\r",
                  "User-Agent: Mozilla/4.0 (compatible; MSIE 6.0; Windows NT 5.0; .NET CLR 1.1.4322)\r",
              }));

    CStaticMap none;
    (void)none.GetImage(Target);
    EXPECT_TRUE(server.TakeRequests()[0].starts_with(
        "GET /staticimage?width=640&height=480&paths=&pathStyles=0xff0000,5,1 HTTP/1.1\r\n"));

    // Of 51 lines the last isn't drawn; one that is among the 50 isn't refused, but isn't new either.
    CStaticMap full;
    for (int i = 1; i <= 50; ++i) {
        EXPECT_TRUE(full.AddPath(i, 1.5, 2.5, 3.5));
    }
    EXPECT_FALSE(full.AddPath(51.0, 1.5, 2.5, 3.5));
    EXPECT_FALSE(full.AddPath(7.0, 1.5, 2.5, 3.5));
    (void)full.GetImage(Target);
    const std::vector<std::string> paths = AskedPaths(server.TakeRequests()[0]);
    ASSERT_EQ(paths.size(), 50U);
    EXPECT_EQ(paths.back(), "50,1.5;2.5,3.5");
}

TEST_F(StaticMap, WhateverIsAnsweredIsSaved) {
    std::string answer;
    CAnsweringServer server([&](const std::string& request, const auto& send) {
        if (request.starts_with("GET /moved")) {
            send("HTTP/1.1 302 Found\r\nLocation: /there?a|b\r\nContent-Length: 4\r\n\r\ngone");
            return;
        }
        send(answer);
    });
    struct Case {
        const char* Path;
        std::string Answer;
        std::string Saved;
    };
    const std::string binary("a\0b\r\n\xFF", 6);
    for (const Case& c : std::vector<Case>{
             {"/a", "HTTP/1.1 200 OK\r\nContent-Length: 6\r\n\r\n" + binary, binary},
             {"/../b?c#d",
              "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n2\r\nde\r\n0\r\n\r\n",
              "abcde"},
             {"", "HTTP/1.0 500 Broken\r\n\r\n<html>no map</html>", "<html>no map</html>"},
             {"/empty", "HTTP/1.1 404 None\r\nContent-Length: 0\r\n\r\n", ""},
             // Broken off, in the body and before it.
             {"/short", "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf", "half"},
             {"/none", "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n", ""},
             {"/moved", "HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\nnew", "new"}}) {
        Folder.WriteFile("_map.png", "the former picture, longer than any of these");
        answer = c.Answer;
        EXPECT_TRUE(HttpGetToFile(server.Host() + c.Path, Target)) << c.Path;
        EXPECT_TRUE(TargetExists());
        EXPECT_EQ(Folder.ReadFile("_map.png"), c.Saved) << c.Path;
    }
    std::string asked;
    for (const std::string& request : server.TakeRequests()) {
        asked += request.substr(0, request.find(" HTTP")) + "\n";
    }
    EXPECT_EQ(asked,
              "GET /a\nGET /../b?c\nGET /\nGET /empty\nGET /short\nGET /none\nGET /moved\nGET /there?a|b\n");
    EXPECT_FALSE(HttpGetToFile(server.Host(), Folder.Path("no folder/_map.png")));
}

TEST_F(StaticMap, WithoutAnAnswerThereIsNoFile) {
    std::string gone;
    CAnsweringServer server([&](const std::string& request, const auto& send) {
        if (request.starts_with("GET /loop")) {
            send("HTTP/1.1 302 Found\r\nLocation: /loop\r\nContent-Length: 0\r\n\r\n");
        } else if (request.starts_with("GET /gone")) {
            send("HTTP/1.1 302 Found\r\nLocation: http://" + gone + "/\r\nContent-Length: 0\r\n\r\n");
        } else if (request.starts_with("GET /file")) {
            send("HTTP/1.1 302 Found\r\nLocation: file:///etc/hostname\r\nContent-Length: 0\r\n\r\n");
        } else if (request.starts_with("GET /head")) {
            send("HTTP/1.1 200 OK\r\nContent-Len");
        } else if (request.starts_with("GET /wait")) {
            std::this_thread::sleep_for(std::chrono::milliseconds(200));
        }
    });
    {
        const CAnsweringServer closed([](const std::string&, const auto&) {});
        gone = closed.Host();
    }
    for (const std::string& url :
         {gone + "/", server.Host() + "/closed", server.Host() + "/loop", server.Host() + "/gone",
          server.Host() + "/file", server.Host() + "/head", server.Host() + "/wait",
          "https://" + server.Host() + "/", "ftp://" + server.Host() + "/",
          std::string("file:///etc/hostname"), std::string("http://"), std::string("http://:80/"),
          std::string("127.0.0.1:0/"), std::string()}) {
        EXPECT_FALSE(HttpGetToFile(url, Target, std::chrono::milliseconds(100))) << url;
        EXPECT_FALSE(TargetExists()) << url;
    }
    Folder.WriteFile("_map.png", "former");
    UseService(gone);
    (void)CStaticMap().GetImage(Target);
    EXPECT_FALSE(TargetExists());
}
