for (;;)
    wait(1);
