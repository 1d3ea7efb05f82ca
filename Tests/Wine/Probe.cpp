// Shows whether Wine runs programs of this word size at all.
int main()
{
    return 42;
}
