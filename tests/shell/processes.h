// Other processes of a test: one that holds or takes something on request, and one without root's rights.
#pragma once

#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <utility>

// A child that does `work` with each character that it is sent, and tells its result.
class COtherProcess {
public:
    explicit COtherProcess(const std::function<bool(char)>& work) {
        int down[2] = {-1, -1};
        int up[2] = {-1, -1};
        m_made = pipe(down) == 0 && pipe(up) == 0;
        m_child = m_made ? fork() : -1;
        if (m_child == 0) {
            close(down[1]);
            close(up[0]);
            for (char order = 0; read(down[0], &order, 1) == 1;) {
                const char result = work(order) ? 'y' : 'n';
                (void)!write(up[1], &result, 1);
            }
            _exit(0);
        }
        close(down[0]);
        close(up[1]);
        m_orders = down[1];
        m_results = up[0];
    }
    ~COtherProcess() {
        close(m_orders);
        close(m_results);
        waitpid(m_child, nullptr, 0);
    }
    COtherProcess(const COtherProcess&) = delete;
    COtherProcess& operator=(const COtherProcess&) = delete;

    // False too if it died over it.
    bool Do(char order) const {
        char result = 0;
        return m_made && write(m_orders, &order, 1) == 1 && read(m_results, &result, 1) == 1 && result == 'y';
    }

private:
    bool m_made = false;
    pid_t m_child = -1;
    int m_orders = -1;
    int m_results = -1;
};

// Whether `work` gives true in a child for whom read-only files are read-only.
inline bool AsOrdinaryUser(const std::function<bool()>& work) {
    return COtherProcess([&](char) {
               constexpr uid_t nobody = 65534;
               const bool dropped = geteuid() != 0 || (setgroups(0, nullptr) == 0 && setgid(nobody) == 0 &&
                                                       setuid(nobody) == 0);
               return dropped && work();
           })
        .Do('x');
}
