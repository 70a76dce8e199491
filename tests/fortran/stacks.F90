! Every function of module kesl, on random matrices of kind REAL_KIND: are the results what they are called?
program stacks
    use, intrinsic :: iso_c_binding, only: c_float, c_double, c_int, c_ptrdiff_t
    use, intrinsic :: ieee_arithmetic, only: ieee_is_nan
    use kesl
    implicit none
    integer, parameter :: kind = REAL_KIND, m = 6, n = 4, k = 2, objects = 41, p = n
    real(kind), parameter :: tolerance = 1e4_kind * epsilon(1._kind)
    real(kind), target :: tall(m, n, objects), a(n, n, objects), symmetric(n, n, objects), positive(n, n, objects)
    real(kind) :: b(n, k, objects), right(m, k, objects), unit(n, n), x(n, k, objects)
    real(kind), target :: y(n, n, objects)
    integer(c_int) :: info(objects)
    integer :: i, o

    call random_seed(put=[(i, i = 1, 64)])
    call random_number(tall)
    call random_number(a)
    call random_number(b)
    call random_number(right)
    tall = 2 * tall - 1
    a = 2 * a - 1
    unit = 0
    do i = 1, n
        unit(i, i) = 1
        a(i, i, :) = a(i, i, :) + 4
    end do
    do o = 1, objects
        symmetric(:, :, o) = a(:, :, o) + transpose(a(:, :, o))
        positive(:, :, o) = matmul(a(:, :, o), transpose(a(:, :, o)))
    end do

    call products
    call systems
    call least_squares
    call symmetric_eigenproblems
    call general_eigenproblems
    call singular_values
    call layouts
    call failures

contains
    subroutine expect(holds, what)
        logical, intent(in) :: holds
        character(*), intent(in) :: what
        if (holds) return
        print *, "wrong: ", what
        error stop 1
    end subroutine

    subroutine same(found, wanted, what)
        real(kind), intent(in) :: found(:, :), wanted(:, :)
        character(*), intent(in) :: what
        call expect(all(shape(found) == shape(wanted)), what // ", shape")
        call expect(all(abs(found - wanted) <= tolerance), what)
    end subroutine

    subroutine good(result, what)
        integer(c_ptrdiff_t), intent(in) :: result
        character(*), intent(in) :: what
        call expect(result == 0, what // ": " // kesl_strerror("kesl_" // what, result))
    end subroutine

    function diagonal(values) result(d)
        real(kind), intent(in) :: values(:)
        real(kind) :: d(size(values), size(values))
        integer :: j
        d = 0
        do j = 1, size(values)
            d(j, j) = values(j)
        end do
    end function

    subroutine products
        real(kind) :: c(m, n, objects), numbers(objects), u(3, objects), v(3, objects), w(3, objects)
        call good(kesl_matmul(tall, a, c), "matmul")
        call good(kesl_vecdot(tall(:, 1, :), tall(:, 2, :), numbers), "vecdot")
        call same(reshape(numbers, [objects, 1]), reshape(sum(tall(:, 1, :) * tall(:, 2, :), 1), [objects, 1]), "vecdot")
        call good(kesl_norm(tall(:, 3, :), numbers), "norm")
        call same(reshape(numbers, [objects, 1]), reshape(norm2(tall(:, 3, :), 1), [objects, 1]), "norm")
        u = tall(1:3, 1, :)
        v = tall(4:6, 1, :)
        call good(kesl_cross(u, v, w), "cross")
        call same(w, cshift(u, 1) * cshift(v, 2) - cshift(u, 2) * cshift(v, 1), "cross")
        call good(kesl_trace(a, numbers), "trace")
        do o = 1, objects
            call same(c(:, :, o), matmul(tall(:, :, o), a(:, :, o)), "matmul")
            call expect(abs(numbers(o) - sum(a(:, :, o) * unit)) <= tolerance, "trace")
        end do
    end subroutine

    subroutine systems
        real(kind) :: lu(n, n, objects), l(n, n), det(objects), product_of_pivots, row(n), permuted(n, n)
        integer(c_int) :: pivots(n, objects)
        call good(kesl_inv(a, y), "inv")
        call good(kesl_solve(a, b, x), "solve")
        call good(kesl_det(a, det), "det")
        do o = 1, objects
            call same(matmul(a(:, :, o), y(:, :, o)), unit, "inv")
            call same(matmul(a(:, :, o), x(:, :, o)), b(:, :, o), "solve")
        end do
        call good(kesl_lu(a, lu, pivots), "lu")
        call good(kesl_lu_solve(lu, pivots, b, x), "lu_solve")
        do o = 1, objects
            l = unit
            permuted = a(:, :, o)
            product_of_pivots = 1
            do i = 1, n
                l(i + 1:, i) = lu(i + 1:, i, o)
                lu(i + 1:, i, o) = 0
                row = permuted(i, :)
                permuted(i, :) = permuted(pivots(i, o), :)
                permuted(pivots(i, o), :) = row
                product_of_pivots = product_of_pivots * lu(i, i, o) * merge(1, -1, pivots(i, o) == i)
            end do
            call same(matmul(l, lu(:, :, o)), permuted, "lu")
            call expect(abs(det(o) / product_of_pivots - 1) <= tolerance, "det")
            call same(matmul(a(:, :, o), x(:, :, o)), b(:, :, o), "lu_solve")
        end do
        call good(kesl_cholesky(positive, y), "cholesky")
        call good(kesl_cholesky_solve(y, b, x), "cholesky_solve")
        do o = 1, objects
            call same(matmul(y(:, :, o), transpose(y(:, :, o))), positive(:, :, o), "cholesky")
            call expect(all(abs(y(1, 2:, o)) <= 0), "cholesky, triangle")
            call same(matmul(positive(:, :, o), x(:, :, o)), b(:, :, o), "cholesky_solve")
        end do
    end subroutine

    subroutine least_squares
        real(kind) :: q(m, n, objects), r(n, n, objects)
        call good(kesl_qr(tall, q, r), "qr")
        call good(kesl_lstsq(tall, right, x), "lstsq")
        do o = 1, objects
            call same(matmul(q(:, :, o), r(:, :, o)), tall(:, :, o), "qr")
            call same(matmul(transpose(q(:, :, o)), q(:, :, o)), unit, "qr, orthogonality")
            call expect(all(abs(r(n, :n - 1, o)) <= 0), "qr, triangle")
            call same(matmul(transpose(tall(:, :, o)), matmul(tall(:, :, o), x(:, :, o)) - right(:, :, o)), 0 * x(:, :, o), "lstsq")
        end do
    end subroutine

    subroutine symmetric_eigenproblems
        real(kind) :: w(n, objects), values(n, objects)
        call good(kesl_eigvalsh(symmetric, values), "eigvalsh")
        call good(kesl_eigh(symmetric, w, y), "eigh")
        call same(values, w, "eigvalsh")
        call expect(all(w(:n - 1, :) <= w(2:, :)), "eigh, order")
        do o = 1, objects
            call same(matmul(matmul(y(:, :, o), diagonal(w(:, o))), transpose(y(:, :, o))), symmetric(:, :, o), "eigh")
        end do
    end subroutine

    subroutine general_eigenproblems
        real(kind) :: wr(n, objects), wi(n, objects), vr(n, n, objects), vl(n, n, objects), left(n, objects)
        complex(kind) :: w(n), v(n)
        call good(kesl_eigvals(a, wr, wi, info), "eigvals")
        call expect(all(info == 0), "eigvals, info")
        call good(kesl_eig(a, wr, wi, vr, vl), "eig")
        call good(kesl_eig(a, left, wi, vl=y), "eig")
        call same(left, wr, "eig without right vectors")
        call expect(all(abs(y - vl) <= tolerance), "eig without right vectors")
        do o = 1, objects
            w = cmplx(wr(:, o), wi(:, o), kind)
            do i = 1, n
                v = vector(vr(:, :, o), wi(:, o), i)
                call expect(all(abs(matmul(a(:, :, o), v) - w(i) * v) <= tolerance), "eig, right")
                v = conjg(vector(vl(:, :, o), wi(:, o), i))
                call expect(all(abs(matmul(v, a(:, :, o)) - w(i) * v) <= tolerance), "eig, left")
                call expect(abs(norm2(abs(v)) - 1) <= tolerance, "eig, length")
            end do
        end do
        call expect(any(wi > 0), "eig of matrices that have complex eigenvalues")
        call good(kesl_eigvals(a, left, wi), "eigvals")
        call same(left, wr, "eigvals")
    end subroutine

    function vector(vectors, imaginary, j) ! of eigenvalue j: a column, or of a pair the real and the imaginary part
        real(kind), intent(in) :: vectors(:, :), imaginary(:)
        integer, intent(in) :: j
        complex(kind) :: vector(n)
        if (imaginary(j) > 0) then
            vector = cmplx(vectors(:, j), vectors(:, j + 1), kind)
        else if (imaginary(j) < 0) then
            vector = cmplx(vectors(:, j - 1), -vectors(:, j), kind)
        else
            vector = vectors(:, j)
        end if
    end function

    subroutine singular_values
        real(kind) :: u(m, p, objects), s(p, objects), vt(p, n, objects), values(p, objects), v(n, p, objects), ut(p, m, objects)
        call good(kesl_svdvals(tall, values), "svdvals")
        call good(kesl_svd(tall, u, s, vt), "svd")
        call same(values, s, "svdvals")
        call expect(all(s(:p - 1, :) >= s(2:, :)), "svd, order")
        do o = 1, objects
            call same(matmul(matmul(u(:, :, o), diagonal(s(:, o))), vt(:, :, o)), tall(:, :, o), "svd")
        end do
        call good(kesl_svd(reshape(tall, [n, m, objects], order=[2, 1, 3]), v, values, ut), "svd") ! of a wide matrix
        call same(values, s, "svd of the transpose")
    end subroutine

    ! Sections, steps of either sign, one source for all, a destination on its source, and no objects at all.
    subroutine layouts
        real(kind), target :: spread_out(2 * n, 2 * n, 3 * objects), z(n, n, objects)
        real(kind) :: none(n, n, 0)
        call good(kesl_inv(a, y), "inv")
        spread_out(1::2, 2 * n:2:-2, 3::3) = a
        call good(kesl_inv(spread_out(1::2, 2 * n:2:-2, 3::3), spread_out(2::2, n:1:-1, 2::3)), "inv")
        call expect(all(abs(spread_out(2::2, n:1:-1, 2::3) - y) <= 0), "inv of a section")
        call expect(all(abs(spread_out(1::2, 2 * n:2:-2, 3::3) - a) <= 0), "inv of a section, source")
        call good(kesl_solve(a(:, :, 2:2), b, x), "solve")
        do o = 1, objects
            call same(matmul(a(:, :, 2), x(:, :, o)), b(:, :, o), "solve with one matrix for all")
        end do
        z(:, :, objects:1:-1) = a
        call good(kesl_inv(z(:, :, objects:1:-1), z(:, :, objects:1:-1)), "inv")
        call expect(all(abs(z(:, :, objects:1:-1) - y) <= 0), "inv in place, from the last object to the first")
        call good(kesl_inv(a(:, :, 1:0), none), "inv")
    end subroutine

    subroutine failures
        real(kind) :: bad(n, n, objects), three(n, n, 3), large(33, 33, 1)
        integer(c_int) :: every_other(2 * objects)
        bad = a
        bad(:, 2, 5) = 0
        bad(3, 3, 7) = huge(1._kind)
        bad(3, 3, 7) = 2 * bad(3, 3, 7) ! infinite
        every_other = 99
        call expect(kesl_inv(bad, y, every_other(::2)) == 2, "inv, number of failures")
        call expect(all(every_other(::2) == merge(2, merge(-1, 0, [(o == 7, o = 1, objects)]), [(o == 5, o = 1, objects)])), "info")
        call expect(all(every_other(2::2) == 99), "info beside")
        call expect(all(ieee_is_nan(y(:, :, 5))) .and. .not. any(ieee_is_nan(y(:, :, 6))), "inv of a singular matrix")

        call expect(kesl_inv(a(:, :3, :), y) == -3, "inv of what is not square")
        call expect(kesl_inv(a, y(:3, :, :)) == -7, "inv, destination too small")
        call expect(kesl_inv(a, three) == -3, "inv, more sources than destinations")
        call expect(kesl_inv(three, y) == -3, "inv, fewer sources than destinations")
        call expect(kesl_inv(a, y, info(2:)) == -11, "inv, info too small")
        large = 0
        call expect(kesl_inv(large, large) == -1, "inv, order 33")
        call expect(kesl_strerror("kesl_inv", -7_c_ptrdiff_t) == "kesl_inv: argument 7, x, is not acceptable", "strerror")
        call expect(kesl_version() == VERSION, "version")
        call expect(index(kesl_level(), "x86-64") == 1, "level")
    end subroutine
end program
