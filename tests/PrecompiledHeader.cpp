/// Owner of the tests' precompiled header: an executable, as the tests are, so that the compiler
/// takes it.
int main() {
    return 0;
}
