int own = 0;
