// Checks whether programs of this kind run at all.
int main()
{
    return 42;
}
