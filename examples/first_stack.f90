! Inverts a stack of 3 by 3 matrices in one call.
program first_stack
    use, intrinsic :: iso_fortran_env, only: real32
    use kesl
    implicit none
    real(real32) :: a(3, 3, 3), x(3, 3, 3)
    integer :: info(3), k

    a(:, :, 1) = reshape([2, 0, 0, 0, 4, 0, 0, 0, 8], [3, 3])
    a(:, :, 2) = reshape([1, 2, 0, 2, 4, 0, 3, 6, 1], [3, 3]) ! singular
    a(:, :, 3) = 1e-9 * reshape([1, 0, 0, 2, 1, 0, 0, 0, 1], [3, 3])
    print "(i0, a)", kesl_inv(a, x, info), " failed"
    do k = 1, 3
        print "(a, i0, a, *(es10.2))", "info ", info(k), ":", x(1, :, k)
    end do
end program
