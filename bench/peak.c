/* peak PROGRAM ARGUMENT...: prints the largest resident size, in KiB, that the program had, and
 * ends as it did. The kernel counts in what the process was before it became the program: this one,
 * which is small. Addresses do not vary: how many pages of a file come along with one depends on
 * them.
 */
#include <fcntl.h>
#include <stdio.h>
#include <sys/personality.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

int main(int argc, char** argv) {
    if (argc < 2)
        return 2;
    pid_t child = fork();
    if (child == 0) {
        personality(ADDR_NO_RANDOMIZE);
        dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
        execvp(argv[1], argv + 1);
        _exit(126);
    }
    struct rusage usage = {0};
    int status;
    if (wait4(child, &status, 0, &usage) != child)
        return 1;
    printf("%ld\n", usage.ru_maxrss);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 126;
}
