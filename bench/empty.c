/* The least that a process costs: a program that does nothing. */
int main(void) {
    return 0;
}
