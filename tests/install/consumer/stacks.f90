! Inverts matrices, one of which is singular.
program stacks
    use kesl
    implicit none
    integer, parameter :: n = 3, objects = 500
    double precision :: a(n, n, objects), x(n, n, objects)
    integer :: info(objects), i, k

    a = reshape([(modulo(i * 37, 101) / 101d0, i = 1, size(a))], shape(a))
    do i = 1, n
        a(i, i, :) = a(i, i, :) + 3
    end do
    a(2, :, 7) = 0
    if (kesl_inv(a, x, info) /= 1) stop 1
    if (info(7) /= 3 .or. count(info /= 0) /= 1) stop 2
    do k = 1, objects
        do i = 1, n
            if (info(k) == 0 .and. abs(dot_product(a(i, :, k), x(:, i, k)) - 1) > 1e-10) stop 3
        end do
    end do
    print "(4a)", "kesl ", kesl_version(), " for ", kesl_level()
end program
